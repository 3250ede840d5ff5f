# The tool's own pieces: they talk to nobody.
add_executable(unit_tool
    tool_interrogation_test.cpp
    tool_echoes_test.cpp
    tool_judgement_test.cpp
    tool_modulation_error_test.cpp
    tool_plot_text_test.cpp
    tool_interrupt_test.cpp
    tool_log_line_test.cpp
    tool_log_reader_test.cpp
    tool_reading_test.cpp
    tool_settings_test.cpp
    tool_update_request_test.cpp
)
target_link_libraries(unit_tool PRIVATE vx63-tool-parts vx63_warnings GTest::gtest_main)
add_test(NAME unit_tool COMMAND unit_tool --gtest_brief=1)
