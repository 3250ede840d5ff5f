// spdlog: a file that is kept open, for any number of threads, and flushed behind every line.
#include "others/log.h"
#include "require.h"

#include <spdlog/logger.h>
#include <spdlog/sinks/basic_file_sink.h>

namespace bench {

Body spdlogLine(const std::string& path)
{
    const auto logger =
        std::make_shared<spdlog::logger>("vx63", std::make_shared<spdlog::sinks::basic_file_sink_mt>(path));
    logger->set_pattern("%Y-%m-%d %H:%M:%S.%f : vx63-bench : %s(%#) %!() : %v");
    logger->flush_on(spdlog::level::info);
    logger->set_error_handler([](const std::string& why) { require(false, "spdlog", why.c_str()); });
    return [logger] {
        logger->log(spdlog::source_loc{"libvx63.cpp", __LINE__, "vx63_startSingleMeas"}, spdlog::level::info,
                    "End. vx63_err={}", 0);
    };
}

} // namespace bench
