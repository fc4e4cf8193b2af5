// SPDX-License-Identifier: Apache-2.0
/** The process's attachment to the MCTP client library. */
#pragma once

#include <mctplink.h>

namespace vantric {

/** Receives discoveries and endpoint tables. Runs on a thread of the library, which is held for as
 *  long as the observers work on a table. Frees a delivered table. */
void MctpClientCallBack(MctpLinkCallbackInfo* callbackInfo);

/** Attached while it lives. */
class MctpClient {
public:
    /** Attaches with MctpClientCallBack. A failure is logged, and no table ever comes. */
    MctpClient();
    ~MctpClient();
    MctpClient(const MctpClient&) = delete;
    MctpClient& operator=(const MctpClient&) = delete;

private:
    void MctpLinkAttachWrapper();
};

} // namespace vantric
