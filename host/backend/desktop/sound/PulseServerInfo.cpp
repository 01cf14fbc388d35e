// SDL's threads ask a PulseAudio server for the names of its default devices and copy them without looking whether
// there are any (SDL 2.26.5, src/audio/pulseaudio/SDL_pulseaudio.c, ServerInfoCallback). A server without a sink or a
// source has none: the program died at every start on a machine without sound hardware, and when the last headphones
// were unplugged.
//
// SDL is linked against libpulse, so the program's own function of that name takes the library's place for it. It asks
// the library, and answers an empty name, which is no device's, for one that is not there. Everything else of SDL's way
// with devices stays as it is. Where SDL loads libpulse by itself, this is not reached and changes nothing.

#include <dlfcn.h>
#include <pulse/introspect.h>

#include <memory>

namespace {

struct Request {
    pa_server_info_cb_t callback;
    void* userdata;
};

void Answer(pa_context* context, const pa_server_info* info, void* data) {
    const std::unique_ptr<const Request> request(static_cast<const Request*>(data));
    if (info == nullptr) {
        request->callback(context, info, request->userdata);
        return;
    }
    pa_server_info complete = *info;
    if (complete.default_sink_name == nullptr) complete.default_sink_name = "";
    if (complete.default_source_name == nullptr) complete.default_source_name = "";
    request->callback(context, &complete, request->userdata);
}

}  // namespace

extern "C" pa_operation* pa_context_get_server_info(pa_context* context, pa_server_info_cb_t callback, void* userdata) {
    using Function = pa_operation*(pa_context*, pa_server_info_cb_t, void*);
    static auto* const library = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, "pa_context_get_server_info"));
    if (library == nullptr) return nullptr;
    if (callback == nullptr) return library(context, callback, userdata);
    auto request = std::make_unique<Request>(Request{callback, userdata});
    pa_operation* const operation = library(context, Answer, request.get());
    // An operation that began answers in any case, without the information when the connection ends before that.
    if (operation != nullptr) static_cast<void>(request.release());
    return operation;
}
