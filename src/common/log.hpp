// SPDX-License-Identifier: Apache-2.0
/** The head that every log line of the daemon carries. */
#pragma once

#include "common/thread_name.hpp"

#include <tracelog.h>

namespace vantric {

/** Module number of the daemon in the platform's log. */
inline constexpr int logModule = 119;

/** Levels in use; a line is written at one of them. */
enum LogLevel : int {
    LOG_LEVEL_ERROR = 1,   ///< failures and milestones
    LOG_LEVEL_WARNING = 2, ///< conditions that may pass
    LOG_LEVEL_TRACE = 4,   ///< what the daemon does, step by step
    LOG_LEVEL_FINEST = 9,  ///< life cycle of single objects
};

} // namespace vantric

/** Writes one line with thread name, file, function and line in front of it. A macro, because only
 *  a macro knows where it stands and lets the compiler check the format. */
#define VANTRIC_LOG(level, format, ...)                                                            \
    tracelog_printf((level), ::vantric::logModule, "%s:%s:%s:%u:" format,                          \
                    ::vantric::get_thread_name(), __FILE_NAME__, __func__,                         \
                    static_cast<unsigned>(__LINE__) __VA_OPT__(, ) __VA_ARGS__)
