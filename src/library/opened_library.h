#pragma once

#include <dlfcn.h>

// One function of a library opened with dlopen(), typed as its header declares it: false when
// the library lacks it (dlerror() says why).
template<typename Function>
bool resolveFunction(void *library, Function *&function, const char *name)
{
    function = reinterpret_cast<Function *>(dlsym(library, name));
    return function != nullptr;
}
