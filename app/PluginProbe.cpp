#include "app/PluginProbe.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orbel::app {

namespace {

constexpr unsigned mostSeconds = 10;
constexpr char loadedMark = '+';
constexpr char failedMark = '-';

/// As much of the two interfaces as is asked here: a host needs no headers to say hello.
struct Frei0rInfo {
    const char* name;
    const char* author;
    int pluginType;
    int colorModel;
    int interfaceVersion;
    int majorVersion;
    int minorVersion;
    int controls;
    const char* explanation;
};
struct Frei0rControl {
    const char* name;
    int type;
    const char* explanation;
};
struct OfxDescription {
    const char* interfaceName;
    int interfaceVersion;
    const char* identifier;
    unsigned majorVersion;
    unsigned minorVersion;
};

class Library {
public:
    explicit Library(const std::string& file)
        : m_handle(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        if (m_handle == nullptr) {
            throw std::runtime_error(dlerror());
        }
    }

    template<typename Signature>
    [[nodiscard]] Signature* get(const char* name) const {
        void* const address = dlsym(m_handle, name);
        if (address == nullptr) {
            throw std::runtime_error(std::string("it has no function ") + name);
        }
        return reinterpret_cast<Signature*>(address);
    }

private:
    void* m_handle; // the process ends with it
};

bool drawsBuiltInShape(const Library& library, int controls) {
    constexpr unsigned width = 64;
    constexpr unsigned height = 36;
    void* const instance = library.get<void*(unsigned, unsigned)>("f0r_construct")(width, height);
    for (int i = 0; i < controls; ++i) {
        Frei0rControl control{};
        library.get<void(Frei0rControl*, int)>("f0r_get_param_info")(&control, i);
        if (control.name != nullptr && std::string(control.name) == "Presets") {
            double shape = 0.075; // the third of forty
            library.get<void(void*, void*, int)>("f0r_set_param_value")(instance, &shape, i);
        }
    }
    const std::vector<std::uint32_t> input(std::size_t{width} * height);
    std::vector<std::uint8_t> output(input.size() * sizeof(std::uint32_t));
    library.get<void(void*, double, const void*, void*)>("f0r_update")(instance, 0.0, input.data(),
                                                                       output.data());
    constexpr std::size_t alpha = 3;
    for (std::size_t i = alpha; i < output.size(); i += sizeof(std::uint32_t)) {
        if (output[i] != 0) {
            return true;
        }
    }
    return false;
}

std::string greetFrei0r(const std::string& file) {
    const Library library(file);
    Frei0rInfo info{};
    library.get<int()>("f0r_init")();
    library.get<void(Frei0rInfo*)>("f0r_get_plugin_info")(&info);
    if (!drawsBuiltInShape(library, info.controls)) {
        throw std::runtime_error("it loads, but does not find the built-in shapes");
    }
    return std::string(info.name) + " " + std::to_string(info.majorVersion) + "." +
           std::to_string(info.minorVersion) + ", " + std::to_string(info.controls) + " parameters";
}

std::string greetOfx(const std::string& file) {
    const Library library(file);
    if (library.get<int()>("OfxGetNumberOfPlugins")() < 1) {
        throw std::runtime_error("it holds no plug-in");
    }
    const OfxDescription* const plugin = library.get<OfxDescription*(int)>("OfxGetPlugin")(0);
    if (plugin == nullptr || plugin->identifier == nullptr) {
        throw std::runtime_error("it does not say what it is");
    }
    return std::string(plugin->identifier) + " " + std::to_string(plugin->majorVersion) + "." +
           std::to_string(plugin->minorVersion);
}

[[noreturn]] void answer(int pipe, const std::function<std::string()>& greet) {
    alarm(mostSeconds);
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    dup2(nothing, STDOUT_FILENO);
    dup2(nothing, STDERR_FILENO);
    std::string words;
    try {
        words = loadedMark + greet();
    } catch (const std::exception& error) {
        words = failedMark + std::string(error.what());
    }
    const bool told = write(pipe, words.data(), words.size()) >= 0;
    _exit(told ? 0 : 1);
}

std::string readAll(int pipe) {
    std::string text;
    char bytes[512];
    for (ssize_t count = read(pipe, bytes, sizeof bytes); count > 0;
         count = read(pipe, bytes, sizeof bytes)) {
        text.append(bytes, static_cast<std::size_t>(count));
    }
    return text;
}

PluginProbe probe(const std::function<std::string()>& greet) {
    int ends[2];
    if (pipe(ends) != 0) {
        return {false, "it could not be tried"};
    }
    const pid_t process = fork();
    if (process == 0) {
        close(ends[0]);
        answer(ends[1], greet);
    }
    close(ends[1]);
    const std::string words = readAll(ends[0]);
    close(ends[0]);
    int status = 0;
    waitpid(process, &status, 0);
    if (!words.empty()) {
        return {words.front() == loadedMark, words.substr(1)};
    }
    return {false, WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM ? "it does not come back"
                                                                      : "it crashes"};
}

} // namespace

PluginProbe probeFrei0r(const std::string& file) {
    return probe([&] { return greetFrei0r(file); });
}

PluginProbe probeOfx(const std::string& file) {
    return probe([&] { return greetOfx(file); });
}

} // namespace orbel::app
