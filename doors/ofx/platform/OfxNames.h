#pragma once

// Everything that the OpenFX interface calls by name, and its status codes. The texts are the
// interface; compare them by value, never by address.

namespace orbel::ofx {

// --- Status codes ---
inline constexpr int STAT_OK = 0;
inline constexpr int STAT_FAILED = 1;
inline constexpr int STAT_ERR_UNKNOWN = 3;
inline constexpr int STAT_ERR_MISSING_HOST_FEATURE = 4;
inline constexpr int STAT_ERR_UNSUPPORTED = 5;
inline constexpr int STAT_ERR_EXISTS = 6;
inline constexpr int STAT_ERR_MEMORY = 8;
inline constexpr int STAT_ERR_BAD_HANDLE = 9;
inline constexpr int STAT_ERR_BAD_INDEX = 10;
inline constexpr int STAT_ERR_VALUE = 11;
inline constexpr int STAT_REPLY_DEFAULT = 14;
inline constexpr int STAT_ERR_IMAGE_FORMAT = 1000;

using Name = const char*;

// --- Suites and the interface itself ---
inline constexpr Name IMAGE_EFFECT_API = "OfxImageEffectPluginAPI";
inline constexpr int IMAGE_EFFECT_API_VERSION = 1;
inline constexpr Name PROPERTY_SUITE = "OfxPropertySuite";
inline constexpr Name IMAGE_EFFECT_SUITE = "OfxImageEffectSuite";
inline constexpr Name PARAMETER_SUITE = "OfxParameterSuite";

// --- Actions ---
inline constexpr Name ACTION_LOAD = "OfxActionLoad";
inline constexpr Name ACTION_UNLOAD = "OfxActionUnload";
inline constexpr Name ACTION_DESCRIBE = "OfxActionDescribe";
inline constexpr Name ACTION_DESCRIBE_IN_CONTEXT = "OfxImageEffectActionDescribeInContext";
inline constexpr Name ACTION_CREATE_INSTANCE = "OfxActionCreateInstance";
inline constexpr Name ACTION_DESTROY_INSTANCE = "OfxActionDestroyInstance";
inline constexpr Name ACTION_PURGE_CACHES = "OfxActionPurgeCaches";
inline constexpr Name ACTION_INSTANCE_CHANGED = "OfxActionInstanceChanged";
inline constexpr Name ACTION_GET_CLIP_PREFERENCES = "OfxImageEffectActionGetClipPreferences";
inline constexpr Name ACTION_GET_REGION_OF_DEFINITION = "OfxImageEffectActionGetRegionOfDefinition";
inline constexpr Name ACTION_GET_REGIONS_OF_INTEREST = "OfxImageEffectActionGetRegionsOfInterest";
inline constexpr Name ACTION_IS_IDENTITY = "OfxImageEffectActionIsIdentity";
inline constexpr Name ACTION_RENDER = "OfxImageEffectActionRender";

// --- Contexts, clips, pixels ---
inline constexpr Name CONTEXT_FILTER = "OfxImageEffectContextFilter";
inline constexpr Name CONTEXT_GENERAL = "OfxImageEffectContextGeneral";
inline constexpr Name CLIP_SOURCE = "Source";
inline constexpr Name CLIP_OUTPUT = "Output";
inline constexpr Name COMPONENT_RGBA = "OfxImageComponentRGBA";
inline constexpr Name DEPTH_BYTE = "OfxBitDepthByte";
inline constexpr Name DEPTH_SHORT = "OfxBitDepthShort";
inline constexpr Name DEPTH_FLOAT = "OfxBitDepthFloat";
inline constexpr Name IMAGE_OPAQUE = "OfxImageOpaque";
inline constexpr Name IMAGE_PREMULTIPLIED = "OfxImageAlphaPremultiplied";
inline constexpr Name IMAGE_UNPREMULTIPLIED = "OfxImageAlphaUnPremultiplied";
inline constexpr Name FIELD_LOWER = "OfxFieldLower";
inline constexpr Name FIELD_UPPER = "OfxFieldUpper";
inline constexpr Name FIELD_DOUBLED = "OfxFieldDoubled";

// --- Properties of anything ---
inline constexpr Name PROP_TYPE = "OfxPropType";
inline constexpr Name PROP_NAME = "OfxPropName";
inline constexpr Name PROP_LABEL = "OfxPropLabel";
inline constexpr Name PROP_SHORT_LABEL = "OfxPropShortLabel";
inline constexpr Name PROP_LONG_LABEL = "OfxPropLongLabel";
inline constexpr Name PROP_TIME = "OfxPropTime";
inline constexpr Name PROP_CHANGE_REASON = "OfxPropChangeReason";
inline constexpr Name PROP_INSTANCE_DATA = "OfxPropInstanceData";
inline constexpr Name TYPE_PARAMETER = "OfxTypeParameter";
inline constexpr Name CHANGE_USER_EDITED = "OfxChangeUserEdited";

// --- Properties of effects and of the arguments of their actions ---
inline constexpr Name PROP_PLUGIN_DESCRIPTION = "OfxPropPluginDescription";
inline constexpr Name PROP_GROUPING = "OfxImageEffectPluginPropGrouping";
inline constexpr Name PROP_CONTEXT = "OfxImageEffectPropContext";
inline constexpr Name PROP_SUPPORTED_CONTEXTS = "OfxImageEffectPropSupportedContexts";
inline constexpr Name PROP_SUPPORTED_DEPTHS = "OfxImageEffectPropSupportedPixelDepths";
inline constexpr Name PROP_SUPPORTED_COMPONENTS = "OfxImageEffectPropSupportedComponents";
inline constexpr Name PROP_THREAD_SAFETY = "OfxImageEffectPluginRenderThreadSafety";
inline constexpr Name RENDER_FULLY_SAFE = "OfxImageEffectRenderFullySafe";
inline constexpr Name PROP_HOST_FRAME_THREADING = "OfxImageEffectPluginPropHostFrameThreading";
inline constexpr Name PROP_SINGLE_INSTANCE = "OfxImageEffectPluginPropSingleInstance";
inline constexpr Name PROP_SUPPORTS_TILES = "OfxImageEffectPropSupportsTiles";
inline constexpr Name PROP_SUPPORTS_MULTI_RESOLUTION = "OfxImageEffectPropSupportsMultiResolution";
inline constexpr Name PROP_TEMPORAL_ACCESS = "OfxImageEffectPropTemporalClipAccess";
inline constexpr Name PROP_MULTIPLE_DEPTHS = "OfxImageEffectPropMultipleClipDepths";
inline constexpr Name PROP_MULTIPLE_PARS = "OfxImageEffectPropSupportsMultipleClipPARs";
inline constexpr Name PROP_RENDER_TWICE = "OfxImageEffectPluginPropFieldRenderTwiceAlways";
inline constexpr Name PROP_PREFERENCES_SLAVE = "OfxImageEffectPropClipPreferencesSlaveParam";
inline constexpr Name PROP_RENDER_SCALE = "OfxImageEffectPropRenderScale";
inline constexpr Name PROP_RENDER_WINDOW = "OfxImageEffectPropRenderWindow";
inline constexpr Name PROP_FIELD_TO_RENDER = "OfxImageEffectPropFieldToRender";
inline constexpr Name PROP_QUALITY_DRAFT = "OfxImageEffectPropRenderQualityDraft";
inline constexpr Name PROP_REGION_OF_DEFINITION = "OfxImageEffectPropRegionOfDefinition";
inline constexpr Name PROP_REGION_OF_INTEREST = "OfxImageEffectPropRegionOfInterest";
inline constexpr Name PROP_SOURCE_REGION_OF_INTEREST = "OfxImageClipPropRoI_Source";
inline constexpr Name PROP_FRAME_VARYING = "OfxImageEffectFrameVarying";
inline constexpr Name PROP_PROJECT_SIZE = "OfxImageEffectPropProjectSize";
inline constexpr Name PROP_PROJECT_OFFSET = "OfxImageEffectPropProjectOffset";

// --- Properties of clips and images ---
inline constexpr Name PROP_OPTIONAL = "OfxImageClipPropOptional";
inline constexpr Name PROP_CONNECTED = "OfxImageClipPropConnected";
inline constexpr Name PROP_FIELD_EXTRACTION = "OfxImageClipPropFieldExtraction";
inline constexpr Name PROP_PREMULTIPLICATION = "OfxImageEffectPropPreMultiplication";
inline constexpr Name PROP_PIXEL_DEPTH = "OfxImageEffectPropPixelDepth";
inline constexpr Name PROP_COMPONENTS = "OfxImageEffectPropComponents";
inline constexpr Name PROP_PIXEL_ASPECT = "OfxImagePropPixelAspectRatio";
inline constexpr Name PROP_IMAGE_DATA = "OfxImagePropData";
inline constexpr Name PROP_IMAGE_BOUNDS = "OfxImagePropBounds";
inline constexpr Name PROP_IMAGE_REGION = "OfxImagePropRegionOfDefinition";
inline constexpr Name PROP_IMAGE_ROW_BYTES = "OfxImagePropRowBytes";
inline constexpr Name PROP_IMAGE_FIELD = "OfxImagePropField";

// --- Parameters ---
inline constexpr Name PARAM_TYPE_DOUBLE = "OfxParamTypeDouble";
inline constexpr Name PARAM_TYPE_BOOLEAN = "OfxParamTypeBoolean";
inline constexpr Name PARAM_TYPE_CHOICE = "OfxParamTypeChoice";
inline constexpr Name PARAM_TYPE_RGB = "OfxParamTypeRGB";
inline constexpr Name PARAM_TYPE_DOUBLE_2D = "OfxParamTypeDouble2D";
inline constexpr Name PARAM_TYPE_STRING = "OfxParamTypeString";
inline constexpr Name PARAM_TYPE_GROUP = "OfxParamTypeGroup";
inline constexpr Name PARAM_TYPE_PAGE = "OfxParamTypePage";
inline constexpr Name PARAM_PROP_HINT = "OfxParamPropHint";
inline constexpr Name PARAM_PROP_PARENT = "OfxParamPropParent";
inline constexpr Name PARAM_PROP_ENABLED = "OfxParamPropEnabled";
inline constexpr Name PARAM_PROP_DEFAULT = "OfxParamPropDefault";
inline constexpr Name PARAM_PROP_ANIMATES = "OfxParamPropAnimates";
inline constexpr Name PARAM_PROP_IS_ANIMATING = "OfxParamPropIsAnimating";
inline constexpr Name PARAM_PROP_MIN = "OfxParamPropMin";
inline constexpr Name PARAM_PROP_MAX = "OfxParamPropMax";
inline constexpr Name PARAM_PROP_DISPLAY_MIN = "OfxParamPropDisplayMin";
inline constexpr Name PARAM_PROP_DISPLAY_MAX = "OfxParamPropDisplayMax";
inline constexpr Name PARAM_PROP_INCREMENT = "OfxParamPropIncrement";
inline constexpr Name PARAM_PROP_DIGITS = "OfxParamPropDigits";
inline constexpr Name PARAM_PROP_DOUBLE_TYPE = "OfxParamPropDoubleType";
inline constexpr Name DOUBLE_TYPE_PLAIN = "OfxParamDoubleTypePlain";
inline constexpr Name DOUBLE_TYPE_ANGLE = "OfxParamDoubleTypeAngle";
inline constexpr Name PARAM_PROP_CHOICE_OPTION = "OfxParamPropChoiceOption";
inline constexpr Name PARAM_PROP_STRING_MODE = "OfxParamPropStringMode";
inline constexpr Name STRING_IS_FILE_PATH = "OfxParamStringIsFilePath";
inline constexpr Name STRING_IS_MULTI_LINE = "OfxParamStringIsMultiLine";
inline constexpr Name PARAM_PROP_FILE_EXISTS = "OfxParamPropStringFilePathExists";
inline constexpr Name PARAM_PROP_GROUP_OPEN = "OfxParamPropGroupOpen";
inline constexpr Name PARAM_PROP_PAGE_CHILD = "OfxParamPropPageChild";
inline constexpr Name HOST_PROP_BOOLEAN_ANIMATION = "OfxParamHostPropSupportsBooleanAnimation";
inline constexpr Name HOST_PROP_CHOICE_ANIMATION = "OfxParamHostPropSupportsChoiceAnimation";
inline constexpr Name HOST_PROP_MAX_PAGES = "OfxParamHostPropMaxPages";

} // namespace orbel::ofx
