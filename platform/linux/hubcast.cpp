// SPDX-License-Identifier: Apache-2.0
/** Notifications on a board that has no source of them: each subscription is accepted, and nothing
 *  ever comes. */
#include "hubcast.h"

int hubcast_subscriber_usrctx_init(void** context, const char* subscriber, HubcastCallback callback,
                                   void* /*user*/) {
    static int subscriberWithoutSource = 0;
    if (context == nullptr || subscriber == nullptr || callback == nullptr) {
        return -1;
    }
    *context = &subscriberWithoutSource;
    return 0;
}

int hubcast_subscribe_notification(void* context, const char* name) {
    return context == nullptr || name == nullptr ? -1 : 0;
}
