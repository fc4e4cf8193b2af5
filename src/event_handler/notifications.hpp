/** The platform's notifications of a firmware update. */
#pragma once

namespace vantric {

/** Subscribes to the start and the end of firmware updates; called once, on "PLDM_DevMgr". A
 *  failure leaves the process without them. Notifications reach the observers on a thread of the
 *  notification library. */
void SubscribeToEvents();

} // namespace vantric
