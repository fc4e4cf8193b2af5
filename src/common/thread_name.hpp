/** Name of the calling thread, for the log. */
#pragma once

#include <string>
#include <thread>

namespace vantric {

/** Returns the calling thread's name in a thread-local buffer of 16 bytes, or "vantricd" if the
 *  system doesn't tell it. The pointer stays valid as long as the thread lives. */
const char* get_thread_name();

/** Gives a started thread its name. The system keeps at most 15 characters; a longer name is cut
 *  to them. */
void NameThread(std::thread& thread, const std::string& name);

} // namespace vantric
