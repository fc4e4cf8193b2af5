#include "support/posted_requests.hpp"

#include "dbus_handler/handlers.hpp"

#include <memory>
#include <mutex>
#include <utility>

namespace vantric {

namespace {

std::mutex postedMutex;
test::PostedRequests posted;

/** Keeps a record as its handler would take it over. A size that isn't the record's shows up in the
 *  order. */
template <typename Record>
int Keep(const char* handler, std::vector<Record> test::PostedRequests::*list, void* requestData,
         unsigned long requestSize) {
    const std::unique_ptr<Record> record(static_cast<Record*>(requestData));
    const std::scoped_lock lock(postedMutex);
    posted.order.emplace_back(requestSize == sizeof(Record) ? handler : "record of another size");
    (posted.*list).push_back(std::move(*record));
    return 0;
}

} // namespace

int dbusDataInsert(void* /*context*/, void* requestData, unsigned long requestSize) {
    return Keep(__func__, &test::PostedRequests::sensors, requestData, requestSize);
}

int dbusSetSensorValue(void* /*context*/, void* requestData, unsigned long requestSize) {
    return Keep(__func__, &test::PostedRequests::values, requestData, requestSize);
}

int dbusStateSensorDataInsert(void* /*context*/, void* requestData, unsigned long requestSize) {
    return Keep(__func__, &test::PostedRequests::stateSensors, requestData, requestSize);
}

int dbusSetStateSensorValue(void* /*context*/, void* requestData, unsigned long requestSize) {
    return Keep(__func__, &test::PostedRequests::states, requestData, requestSize);
}

int dbusUpdateDeviceHealthStatus(void* /*context*/, void* requestData, unsigned long requestSize) {
    return Keep(__func__, &test::PostedRequests::healths, requestData, requestSize);
}

int dbusInvDataInsert(void* /*context*/, void* requestData, unsigned long requestSize) {
    return Keep(__func__, &test::PostedRequests::plainInventories, requestData, requestSize);
}

int dbusFruDataInsert(void* /*context*/, void* requestData, unsigned long requestSize) {
    return Keep(__func__, &test::PostedRequests::fruInventories, requestData, requestSize);
}

int dbusControllerData(void* /*context*/, void* requestData, unsigned long requestSize) {
    return Keep(__func__, &test::PostedRequests::controllers, requestData, requestSize);
}

int dbusFWDataUpdate(void* /*context*/, void* requestData, unsigned long requestSize) {
    return Keep(__func__, &test::PostedRequests::firmware, requestData, requestSize);
}

int dbusClear(void* /*context*/, void* requestData, unsigned long requestSize) {
    return Keep(__func__, &test::PostedRequests::clears, requestData, requestSize);
}

} // namespace vantric

namespace vantric::test {

PostedRequests TakePosted() {
    const std::scoped_lock lock(postedMutex);
    return std::exchange(posted, {});
}

} // namespace vantric::test
