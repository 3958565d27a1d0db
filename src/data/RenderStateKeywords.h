#pragma once

#include "jString.h"

#include <span>

// The keyword tables of a material's render settings: the keyword stored in
// material files and the name the editor shows in its combo boxes. The
// display names are the editor's own, spelling included.
class RenderStateKeywords {
public:
    struct Entry {
        const char* display;
        const char* keyword;
    };

    static std::span<const Entry> depthFunctions();
    static std::span<const Entry> bufferMasks();
    static std::span<const Entry> blendOperations();
    static std::span<const Entry> blendFactors();
    static std::span<const Entry> transparentTypes();

    // Display name -> keyword, by exact match. An unknown name logs the
    // table's message with the given routine name and yields "".
    static jString depthFunctionKeyword(const jString& display, const char* routine);
    static jString bufferMaskKeyword(const jString& display, const char* routine);
    static jString blendOperationKeyword(const jString& display, const char* routine);
    static jString blendFactorKeyword(const jString& display, const char* routine);
    static jString transparentTypeKeyword(const jString& display, const char* routine);

    // Keyword -> display name; "" for an unknown keyword. Only the
    // transparent type logs in this direction.
    static jString depthFunctionDisplay(const jString& keyword);
    static jString bufferMaskDisplay(const jString& keyword);
    static jString blendOperationDisplay(const jString& keyword);
    static jString blendFactorDisplay(const jString& keyword);
    static jString transparentTypeDisplay(const jString& keyword, const char* routine);
};
