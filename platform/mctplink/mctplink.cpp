// SPDX-License-Identifier: Apache-2.0
#include "mctplink.h"

#include "session.hpp"

#include <memory>
#include <mutex>
#include <utility>

namespace {

/** The process's attachment. Calls that use it share it, so that a detachment can't pull it away
 *  from under them. */
struct Attachment {
    std::mutex mutex;
    std::shared_ptr<mctplink::Session> session;
};

/** Never destroyed: threads of the library may run until the process has ended. */
Attachment& TheAttachment() {
    static auto* const attachment = std::make_unique<Attachment>().release();
    return *attachment;
}

std::shared_ptr<mctplink::Session> CurrentSession() {
    auto& attachment = TheAttachment();
    const std::lock_guard lock(attachment.mutex);
    return attachment.session;
}

} // namespace

int MctpLinkAttach(uint32_t linkType, uint32_t filter, MctpLinkCallback callback,
                   uint32_t /*flags*/) {
    // Declared before the lock: a session that failed ends without it, since its own threads may
    // want it for as long as they run.
    std::shared_ptr<mctplink::Session> session;
    auto& attachment = TheAttachment();
    const std::lock_guard lock(attachment.mutex);
    if (callback == nullptr || attachment.session) {
        return 1;
    }
    session = mctplink::MakeSession(callback);
    if (!session->Start(linkType, filter)) {
        return 1;
    }
    attachment.session = std::move(session);
    return 0;
}

int MctpLinkDetach(void) {
    std::shared_ptr<mctplink::Session> session;
    {
        auto& attachment = TheAttachment();
        const std::lock_guard lock(attachment.mutex);
        session = std::exchange(attachment.session, nullptr);
    }
    if (session) {
        session->Stop();
    }
    return 0;
}

int MctpLinkSendRequest(struct MctpLinkRequest* request, uint32_t /*flags*/) {
    const auto session = CurrentSession();
    return request != nullptr && session && session->Send(*request) ? 0 : 1;
}

int MctpLinkClearRequest(uint8_t eid, uint32_t /*flags*/) {
    if (const auto session = CurrentSession()) {
        session->Clear(eid);
    }
    return 0;
}
