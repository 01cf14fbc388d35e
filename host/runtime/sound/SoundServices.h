#pragma once

#include "backend/Microphone.h"
#include "backend/Speaker.h"
#include "backend/Storage.h"
#include "runtime/Console.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/trace/Trace.h"

namespace host {

/// What the phone's sound is made with. All of it outlives the sound. UI thread only.
struct SoundServices {
    EventLoop& loop;
    Storage& storage;
    Speaker& speaker;
    Microphone& microphone;
    Trace& trace;
    Console& console;
};

}  // namespace host
