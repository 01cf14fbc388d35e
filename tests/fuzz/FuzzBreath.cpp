// A breath file of any bytes is refused with one line that names it, or heard: in the same way at once and after a
// skip.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "MemoryStorage.h"
#include "Require.h"
#include "runtime/Console.h"
#include "runtime/sound/BreathFile.h"
#include "runtime/sound/PhoneFormat.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kSkippedFrames = 3333;
    constexpr std::size_t kHeardFrames = 2000;
    const auto* bytes = reinterpret_cast<const std::byte*>(data);
    host::Console console;
    MemoryStorage storage;
    storage.Put("/breath.wav", MemoryStorage::Content(bytes, bytes + size));

    std::string problem;
    const auto heard = host::BreathFile::Open(storage, console, "/breath.wav", problem);
    if (heard == nullptr) {
        Require(problem.rfind("/breath.wav: ", 0) == 0, "a refusal names the file");
        return 0;
    }
    std::vector<std::uint8_t> whole((kSkippedFrames + kHeardFrames) * host::kPhoneChannels);
    heard->Read(whole);
    const auto skipping = host::BreathFile::Open(storage, console, "/breath.wav", problem);
    Require(skipping != nullptr, "what opened once opens again");
    skipping->Skip(kSkippedFrames);
    std::vector<std::uint8_t> rest(kHeardFrames * host::kPhoneChannels);
    skipping->Read(rest);
    Require(std::equal(rest.begin(), rest.end(), whole.end() - static_cast<std::ptrdiff_t>(rest.size())),
            "what follows a skip is what would have followed");
    return 0;
}
