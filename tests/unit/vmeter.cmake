# The virtual meter's signal side: the scene, the physics and the handlers, called directly.
find_package(rapidcheck REQUIRED)

add_executable(unit_vmeter_scene
    vmeter_angle_test.cpp
    vmeter_constellation_test.cpp
    vmeter_delay_profile_test.cpp
    vmeter_list_test.cpp
    vmeter_measurement_test.cpp
    vmeter_scene_test.cpp
    vmeter_signal_test.cpp
)
target_compile_definitions(unit_vmeter_scene PRIVATE VX63_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
target_link_libraries(unit_vmeter_scene PRIVATE
    vmeter_core vx63_warnings GTest::gtest_main rapidcheck rapidcheck_gtest)
add_test(NAME unit_vmeter_scene COMMAND unit_vmeter_scene --gtest_brief=1)

# Its process side: fault rules, the trace, the memory that the services share.
add_executable(unit_vmeter_process
    vmeter_faults_test.cpp
    vmeter_shared_test.cpp
    vmeter_trace_test.cpp
)
target_link_libraries(unit_vmeter_process PRIVATE
    vmeter_core vx63_warnings GTest::gtest_main rapidcheck rapidcheck_gtest)
add_test(NAME unit_vmeter_process COMMAND unit_vmeter_process --gtest_brief=1)

# The services about the meter itself: handlers, power, settings files, the state as JSON.
add_executable(unit_vmeter_services
    vmeter_device_scene_test.cpp
    vmeter_services_test.cpp
    vmeter_settings_test.cpp
    vmeter_state_test.cpp
)
target_include_directories(unit_vmeter_services PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(unit_vmeter_services PRIVATE
    vmeter_core vx63_warnings GTest::gtest_main rapidcheck rapidcheck_gtest)
add_test(NAME unit_vmeter_services COMMAND unit_vmeter_services --gtest_brief=1)
