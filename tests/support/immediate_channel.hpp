/** A channel without a loop: Execute runs the handler before it returns, on the caller's thread.
 *
 * immediate_channel.cpp takes the place of the platform's channel in an executable that is linked
 * with it, which then chooses the handlers too. */
#pragma once

namespace vantric::test {

/** What Execute returns from now on: 0, and it runs the handlers, or an error, and it takes
 * nothing. Any thread. */
void SetChannelResult(int result);

} // namespace vantric::test
