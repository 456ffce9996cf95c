// SPDX-License-Identifier: Apache-2.0
// Where the real models and their converter are, and whether they are there.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "ifchost/ConverterProcess.h"

namespace ifchost::testing {

/// Folder of the real models: the variable KYCLASH_MODELS, else shared/models beside the sources.
inline std::filesystem::path ModelFolder() {
    const char* named = std::getenv("KYCLASH_MODELS");
    return named != nullptr ? std::filesystem::path(named)
                            : std::filesystem::path(IFCHOST_SOURCE_DIR) / "../shared/models";
}

/// Folder of the converter: the variable KYCLASH_CONVERTER_DIR, else the one among the sources.
inline std::filesystem::path ConverterFolder() {
    const char* named = std::getenv("KYCLASH_CONVERTER_DIR");
    return named != nullptr ? std::filesystem::path(named)
                            : std::filesystem::path(IFCHOST_SOURCE_DIR) / "apps/ifchost/converter";
}

/// Why no file can be converted here; empty when all that it takes is there.
inline std::string WhyNoConversion() {
    if (FindOnPath("node").empty() && std::getenv("KYCLASH_NODE") == nullptr) {
        return "needs Node.js on PATH";
    }
    if (!std::filesystem::exists(ConverterFolder() / "node_modules/web-ifc")) {
        return "needs web-ifc: npm ci --prefix " + ConverterFolder().string();
    }
    return {};
}

/// Why the real models cannot be converted here; empty when all that it takes is there.
inline std::string WhyNoModels() {
    if (const std::string why = WhyNoConversion(); !why.empty()) return why;
    if (!std::filesystem::exists(ModelFolder() / "MANIFEST.tsv")) {
        return "needs the models: KYCLASH_MODELS names their folder";
    }
    return {};
}

}  // namespace ifchost::testing
