// A plug-in that does no more than say what it is.

namespace {

struct Description {
    const char* interfaceName;
    int interfaceVersion;
    const char* identifier;
    unsigned majorVersion;
    unsigned minorVersion;
};

Description description{"OfxImageEffectPluginAPI", 1, "test.stand-in", 3, 14};

} // namespace

extern "C" int OfxGetNumberOfPlugins() {
    return 1;
}

extern "C" Description* OfxGetPlugin(int index) {
    return index == 0 ? &description : nullptr;
}
