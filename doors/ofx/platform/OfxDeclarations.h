#pragma once

// The part of the OpenFX C interface that this plug-in and its tests use, for systems without the
// published headers. Order and types of the members are the interface.

#include <cstddef>

extern "C" {

struct OfxPropertySetStruct;
struct OfxImageEffectStruct;
struct OfxImageClipStruct;
struct OfxImageMemoryStruct;
struct OfxParamStruct;
struct OfxParamSetStruct;

using OfxPropertySetHandle = OfxPropertySetStruct*;
using OfxImageEffectHandle = OfxImageEffectStruct*;
using OfxImageClipHandle = OfxImageClipStruct*;
using OfxImageMemoryHandle = OfxImageMemoryStruct*;
using OfxParamHandle = OfxParamStruct*;
using OfxParamSetHandle = OfxParamSetStruct*;

using OfxStatus = int;
using OfxTime = double;

struct OfxRangeD {
    double min, max;
};
struct OfxRectI {
    int x1, y1, x2, y2;
};
struct OfxRectD {
    double x1, y1, x2, y2;
};

struct OfxHost {
    OfxPropertySetHandle host;
    const void* (*fetchSuite)(OfxPropertySetHandle host, const char* suiteName, int suiteVersion);
};

using OfxPluginEntryPoint = OfxStatus(const char* action, const void* handle,
                                      OfxPropertySetHandle inArgs, OfxPropertySetHandle outArgs);

struct OfxPlugin {
    const char* pluginApi;
    int apiVersion;
    const char* pluginIdentifier;
    unsigned int pluginVersionMajor;
    unsigned int pluginVersionMinor;
    void (*setHost)(OfxHost* host);
    OfxPluginEntryPoint* mainEntry;
};

struct OfxPropertySuiteV1 {
    OfxStatus (*propSetPointer)(OfxPropertySetHandle, const char*, int index, void* value);
    OfxStatus (*propSetString)(OfxPropertySetHandle, const char*, int index, const char* value);
    OfxStatus (*propSetDouble)(OfxPropertySetHandle, const char*, int index, double value);
    OfxStatus (*propSetInt)(OfxPropertySetHandle, const char*, int index, int value);
    OfxStatus (*propSetPointerN)(OfxPropertySetHandle, const char*, int count, void* const*);
    OfxStatus (*propSetStringN)(OfxPropertySetHandle, const char*, int count, const char* const*);
    OfxStatus (*propSetDoubleN)(OfxPropertySetHandle, const char*, int count, const double*);
    OfxStatus (*propSetIntN)(OfxPropertySetHandle, const char*, int count, const int*);
    OfxStatus (*propGetPointer)(OfxPropertySetHandle, const char*, int index, void** value);
    OfxStatus (*propGetString)(OfxPropertySetHandle, const char*, int index, char** value);
    OfxStatus (*propGetDouble)(OfxPropertySetHandle, const char*, int index, double* value);
    OfxStatus (*propGetInt)(OfxPropertySetHandle, const char*, int index, int* value);
    OfxStatus (*propGetPointerN)(OfxPropertySetHandle, const char*, int count, void**);
    OfxStatus (*propGetStringN)(OfxPropertySetHandle, const char*, int count, char**);
    OfxStatus (*propGetDoubleN)(OfxPropertySetHandle, const char*, int count, double*);
    OfxStatus (*propGetIntN)(OfxPropertySetHandle, const char*, int count, int*);
    OfxStatus (*propReset)(OfxPropertySetHandle, const char*);
    OfxStatus (*propGetDimension)(OfxPropertySetHandle, const char*, int* count);
};

struct OfxImageEffectSuiteV1 {
    OfxStatus (*getPropertySet)(OfxImageEffectHandle, OfxPropertySetHandle*);
    OfxStatus (*getParamSet)(OfxImageEffectHandle, OfxParamSetHandle*);
    OfxStatus (*clipDefine)(OfxImageEffectHandle, const char* name, OfxPropertySetHandle*);
    OfxStatus (*clipGetHandle)(OfxImageEffectHandle, const char* name, OfxImageClipHandle*,
                               OfxPropertySetHandle*);
    OfxStatus (*clipGetPropertySet)(OfxImageClipHandle, OfxPropertySetHandle*);
    OfxStatus (*clipGetImage)(OfxImageClipHandle, OfxTime, const OfxRectD* region,
                              OfxPropertySetHandle* image);
    OfxStatus (*clipReleaseImage)(OfxPropertySetHandle image);
    OfxStatus (*clipGetRegionOfDefinition)(OfxImageClipHandle, OfxTime, OfxRectD* bounds);
    int (*abort)(OfxImageEffectHandle);
    OfxStatus (*imageMemoryAlloc)(OfxImageEffectHandle, size_t, OfxImageMemoryHandle*);
    OfxStatus (*imageMemoryFree)(OfxImageMemoryHandle);
    OfxStatus (*imageMemoryLock)(OfxImageMemoryHandle, void**);
    OfxStatus (*imageMemoryUnlock)(OfxImageMemoryHandle);
};

// Values come and go as variable arguments: pointers where they are read, values where they are
// written.
struct OfxParameterSuiteV1 {
    OfxStatus (*paramDefine)(OfxParamSetHandle, const char* type, const char* name,
                             OfxPropertySetHandle*);
    OfxStatus (*paramGetHandle)(OfxParamSetHandle, const char* name, OfxParamHandle*,
                                OfxPropertySetHandle*);
    OfxStatus (*paramSetGetPropertySet)(OfxParamSetHandle, OfxPropertySetHandle*);
    OfxStatus (*paramGetPropertySet)(OfxParamHandle, OfxPropertySetHandle*);
    OfxStatus (*paramGetValue)(OfxParamHandle, ...);
    OfxStatus (*paramGetValueAtTime)(OfxParamHandle, OfxTime, ...);
    OfxStatus (*paramGetDerivative)(OfxParamHandle, OfxTime, ...);
    OfxStatus (*paramGetIntegral)(OfxParamHandle, OfxTime, OfxTime, ...);
    OfxStatus (*paramSetValue)(OfxParamHandle, ...);
    OfxStatus (*paramSetValueAtTime)(OfxParamHandle, OfxTime, ...);
    OfxStatus (*paramGetNumKeys)(OfxParamHandle, unsigned int* count);
    OfxStatus (*paramGetKeyTime)(OfxParamHandle, unsigned int nth, OfxTime*);
    OfxStatus (*paramGetKeyIndex)(OfxParamHandle, OfxTime, int direction, int* index);
    OfxStatus (*paramDeleteKey)(OfxParamHandle, OfxTime);
    OfxStatus (*paramDeleteAllKeys)(OfxParamHandle);
    OfxStatus (*paramCopy)(OfxParamHandle to, OfxParamHandle from, OfxTime offset,
                           const OfxRangeD* range);
    OfxStatus (*paramEditBegin)(OfxParamSetHandle, const char* name);
    OfxStatus (*paramEditEnd)(OfxParamSetHandle);
};

} // extern "C"
