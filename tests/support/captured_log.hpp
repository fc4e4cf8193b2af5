// SPDX-License-Identifier: Apache-2.0
/** The platform's log as a list of lines that a test can look at.
 *
 * captured_log.cpp defines tracelog_printf. An executable that is linked with it logs there and not
 * into the real library. */
#pragma once

#include <functional>
#include <string>
#include <vector>

/** One line, with the head taken apart. */
struct LogLine {
    int level = 0;
    int module = 0;
    std::string function; ///< the third field of the head
    std::string message;  ///< what follows the head, line end included
};

/** Captures from construction to destruction; one at a time. Lines of any thread are kept. */
class CapturedLog {
public:
    CapturedLog();
    ~CapturedLog();
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    /** All lines so far. */
    std::vector<LogLine> Lines() const;

    /** The lines since the construction or the last call; the others forget them too. */
    std::vector<LogLine> Take();

    /** Runs hook with each line from now on, on the thread that logs it; what hook throws ends what
     *  that thread is doing. An empty one ends it. */
    void OnLine(std::function<void(const LogLine&)> hook);

    /** Messages of one level, in order. */
    std::vector<std::string> Messages(int level) const;

    /** How often exactly this message was logged at this level. */
    int Count(int level, const std::string& message) const;
};

/** Returns the lines logged by all threads since the last call, in their order, as in
 *  "1 dbusClear: text": level, function and message. The first call begins it and returns none. */
std::vector<std::string> TakeLog();
