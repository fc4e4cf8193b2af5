/** Answers the commands of an inventory and of two monitor cycles with the chunks of the input. */
#include "chunks.hpp"
#include "conversation.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Chunks responses({data, size});
    ScriptedEndpoint endpoint;
    endpoint.transport.respond = [&responses](const Bytes&) {
        return responses.Empty() ? NoAnswer(3) : Answer{.status = 0, .bytes = responses.Next()};
    };
    TalkTo(endpoint);
    return 0;
}
