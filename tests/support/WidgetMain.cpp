// SPDX-License-Identifier: Apache-2.0
// Entry point of test programs that show widgets; without a choice of platform they stay offscreen.
#include <QApplication>

#include <gmock/gmock.h>

// First what g++ says: the toolkit gives it a __has_feature that knows nothing.
#if defined(__SANITIZE_ADDRESS__)
#define KYCB_LEAKS_ARE_LOOKED_FOR
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KYCB_LEAKS_ARE_LOOKED_FOR
#endif
#endif

#ifdef KYCB_LEAKS_ARE_LOOKED_FOR
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <dlfcn.h>
#include <link.h>

// What the desktop bus keeps at the end, where there is none to talk to, is none of ours. The leak
// detector asks for this by name.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libdbus-1.so\n";
}

namespace {

int NoteIfDriver(dl_phdr_info* library, std::size_t /*size*/, void* drivers) {
    const std::string_view name(library->dlpi_name);
    if (name.ends_with("_dri.so") || name.find("libgallium") != std::string_view::npos)
        static_cast<std::vector<std::string>*>(drivers)->emplace_back(name);
    return 0;
}

// The toolkit unloads the graphics driver at the end of the program, before leaks are looked for.
// What the driver's own variables point to would then look lost, so it stays.
void KeepGraphicsDrivers() {
    std::vector<std::string> drivers;
    dl_iterate_phdr(NoteIfDriver, &drivers);
    for (const std::string& driver : drivers)
        dlopen(driver.c_str(), RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
}

}  // namespace
#endif

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&argc, argv);
    QApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    const QApplication application(argc, argv);
    const int outcome = RUN_ALL_TESTS();
#ifdef KYCB_LEAKS_ARE_LOOKED_FOR
    KeepGraphicsDrivers();
#endif
    return outcome;
}
