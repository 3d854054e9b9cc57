#include "platform/audio/output/QuietBackends.h"

#ifdef __linux__
#include <dlfcn.h>

// Both libraries are there when PortAudio was built with them, and only then.
namespace {

void ignoreAlsa(const char*, int, const char*, int, const char*, ...) {}

void ignoreText(const char*) {}

template <typename Handler>
void install(const char* setter, Handler handler)
{
    if (void* const function = dlsym(RTLD_DEFAULT, setter))
        reinterpret_cast<int (*)(Handler)>(function)(handler);
}

} // namespace

void QuietBackends::silence()
{
    install("snd_lib_error_set_handler", &ignoreAlsa);
    install("PaUtil_SetDebugPrintFunction", &ignoreText);
    install("jack_set_error_function", &ignoreText);
    install("jack_set_info_function", &ignoreText);
}
#else
void QuietBackends::silence() {}
#endif
