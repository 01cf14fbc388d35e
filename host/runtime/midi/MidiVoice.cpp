#include "runtime/midi/MidiVoice.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "runtime/sound/PhoneFormat.h"

namespace host {

namespace {

// "MIDI 1.0 Detailed Specification", 4.2: the kinds of channel messages, here with the first channel, and controllers.
constexpr int kNoteOff = 0x80;
constexpr int kNoteOn = 0x90;
constexpr int kController = 0xB0;
constexpr int kProgram = 0xC0;
constexpr int kBreathController = 2;
constexpr int kAllNotesOff = 123;
constexpr int kMost = 127;
constexpr int kReleaseVelocity = 64;  // what an instrument sends that measures none
constexpr int kLeastVelocity = 64;

}  // namespace

MidiVoice::MidiVoice(ToneTable tones, std::vector<std::unique_ptr<MidiSink>> sinks)
    : tones_(std::move(tones)), sinks_(std::move(sinks)) {
    if (tones_.Program() >= 0) Send({kProgram, tones_.Program()});
    // A listener's breath is as it may have been left.
    SendBreath(0);
}

void MidiVoice::OnToneStarted(VoiceNumber voice, std::string_view file) {
    const int note = tones_.NoteOf(file);
    if (note < 0 || !notes_.emplace(voice, note).second) return;
    Send({kNoteOn, note, kLeastVelocity + breath_ / 2});
}

void MidiVoice::OnToneEnded(VoiceNumber voice) {
    const auto sounding = notes_.find(voice);
    if (sounding == notes_.end()) return;
    Send({kNoteOff, sounding->second, kReleaseVelocity});
    notes_.erase(sounding);
}

void MidiVoice::OnBreath(int peak) {
    const int value = std::clamp(peak - int{kPhoneSilence}, 0, kMost);
    if (value != breath_) SendBreath(value);
}

void MidiVoice::Silence() {
    while (!notes_.empty()) OnToneEnded(notes_.begin()->first);
    if (breath_ != 0) SendBreath(0);
    Send({kController, kAllNotesOff, 0});
}

void MidiVoice::Finish() {
    Silence();
    for (const auto& sink : std::exchange(sinks_, {})) sink->Finish();
}

void MidiVoice::SendBreath(int value) {
    breath_ = value;
    Send({kController, kBreathController, value});
}

void MidiVoice::Send(std::initializer_list<int> bytes) {
    std::array<std::uint8_t, 3> message{};
    std::size_t count = 0;
    for (const int byte : bytes) message.at(count++) = static_cast<std::uint8_t>(byte);
    for (const auto& sink : sinks_) sink->Take({message.data(), count});
}

}  // namespace host
