// The sound with a speaker and a microphone on threads of their own, for the thread sanitiser; and that the audio
// thread takes no memory.

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>

#include "sound/SoundRig.h"

namespace {

thread_local bool isGuarded = false;
std::atomic<int> guardedAllocations{0};

}  // namespace

// Counts what is allocated on a thread while it is guarded.
[[gnu::noinline]] void* operator new(std::size_t size) {
    if (isGuarded) ++guardedAllocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (isGuarded) ++guardedAllocations;
    return std::malloc(size == 0 ? 1 : size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace sound_test {

TEST(SoundThreads, PlayAndListenWithoutARaceOrAnAllocation) {
    constexpr int kPeriods = 4000;
    constexpr int kBlocks = 1500;  // Fewer than are kept for a UI thread that does not come to them at all.
    Rig rig;
    std::vector<std::string> paths;
    for (const std::size_t length : {300U, 5000U, 20000U}) {
        paths.push_back(rig.Path("clip-" + std::to_string(length) + ".wav"));
        WriteWav(paths.back(), 22050, 1, 16, To16Bit(Sine(length, 30, 0.7)));
    }
    TestPlayer players[2];
    int blocks = 0;
    bool isTorn = false;
    TestListener listener([&](std::span<const std::uint8_t> block) {
        ++blocks;
        // Each block swings as far all over; the filters round.
        constexpr int kRounding = 2;
        const auto swing = [](byte each) { return std::abs(each - 128); };
        isTorn = isTorn || std::any_of(block.begin(), block.end(),
                                       [&](byte each) { return std::abs(swing(each) - swing(block[0])) > kRounding; });
    });
    EXPECT_EQ(listener.audioIn->Start(), E_SUCCESS);

    std::atomic<int> running{2};
    std::atomic<bool> isTooLoud{false};
    std::thread speaker([&, speaker = &rig.speaker] {
        std::vector<float> period(256);
        isGuarded = true;
        for (int i = 0; i < kPeriods; ++i) {
            speaker->Pull(period);
            for (const float frame : period) isTooLoud = isTooLoud || !(frame >= -1 && frame <= 1);
        }
        isGuarded = false;
        --running;
    });
    std::thread microphone([&, client = rig.microphone.client] {
        std::vector<float> block(host::kBlockFrames);
        isGuarded = true;
        for (int i = 0; i < kBlocks; ++i) {
            for (std::size_t at = 0; at < block.size(); ++at) {
                block[at] = static_cast<float>(i % 100) / (at % 2 == 0 ? 100.0F : -100.0F);
            }
            client->OnFramesHeard(std::span(block).first(100));
            client->OnFramesHeard(std::span(block).subspan(100));
        }
        isGuarded = false;
        --running;
    });
    testing::internal::CaptureStderr();
    for (unsigned step = 0; running > 0; ++step) {
        TestPlayer& user = players[step % 2];
        switch (step * 2654435761U >> 28U) {
            case 0:
                user.Change(paths[step % paths.size()]);
                break;
            case 1:
                user.Silence();
                break;
            case 2:
                rig.sound->GetOutput().SetSimulatedLoss(step % 2 == 0);
                break;
            case 3:
                user.player->Play();
                break;
            case 4:
                user.player->SetVolume(static_cast<int>(step % 100));
                break;
            case 5:
                user.repeats = static_cast<int>(step % 5);
                break;
            default:
                break;
        }
        rig.clock.AdvanceTo(rig.clock.Now() + 1000);
        rig.RunDue();
    }
    speaker.join();
    microphone.join();
    rig.RunDue();
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(guardedAllocations, 0);
    EXPECT_FALSE(isTooLoud);
    EXPECT_FALSE(isTorn);
    EXPECT_GT(blocks, 0);
}

}  // namespace sound_test
