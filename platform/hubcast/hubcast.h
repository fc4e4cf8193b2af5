/* SPDX-License-Identifier: Apache-2.0 */
/* Platform notifications, such as the start and the end of a firmware update.
 *
 * The callback runs on a thread of the library. */
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* context: the word given at subscription. name: the notification, terminated, valid during the
 * call. length: its length in bytes. */
typedef void (*HubcastCallback)(void* context, const char* name, uintptr_t length);

/* Makes a subscriber and stores it in *context. Returns 0 on success. */
int hubcast_subscriber_usrctx_init(void** context, const char* subscriber, HubcastCallback callback,
                                   void* user);

/* Subscribes to one notification by name. Returns 0 on success. */
int hubcast_subscribe_notification(void* context, const char* name);

#ifdef __cplusplus
}
#endif
