/** The shape that all request handlers have. */
#pragma once

#include "common/log.hpp"

#include <memory>
#include <utility>

namespace vantric {

/** Logs why a request can't be carried out and returns what its handler then returns.
 *  @param handler  name of the handler, for the log */
inline int RefuseRequest(const char* handler, const char* why) {
    tracelog_printf(LOG_LEVEL_ERROR, logModule, "%s:%s:%s:%u:%s\n", get_thread_name(),
                    __FILE_NAME__, handler, static_cast<unsigned>(__LINE__), why);
    return -1;
}

/** Takes a record over from the channel and hands it to work, whose result it returns. Without a
 *  record it logs nullText and returns -1, and releases nothing.
 *  @param handler  name of the calling function, for the log */
template <typename Record, typename Work>
int HandleRequest(const char* handler, void* requestData, unsigned long requestSize, Work&& work,
                  const char* nullText = "requestData or requestSize is null") {
    if (requestData == nullptr || requestSize == 0) {
        return RefuseRequest(handler, nullText);
    }
    const std::unique_ptr<const Record> owned(static_cast<const Record*>(requestData));
    return std::forward<Work>(work)(*owned);
}

} // namespace vantric
