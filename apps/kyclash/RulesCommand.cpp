// SPDX-License-Identifier: Apache-2.0
#include "kyclash/RulesCommand.h"

#include <fstream>
#include <ostream>
#include <sstream>
#include <system_error>

#include <nlohmann/json.hpp>

#include "ifchost/PackageCache.h"
#include "kyclash/OutputFile.h"
#include "kyclash/RuleFile.h"
#include "kyclash/RuleMatrix.h"
#include "kyclash/SystemRoot.h"

namespace kyclash {
namespace {

using ifchost::PathText;
using Json = nlohmann::ordered_json;

void WriteRemarksJson(const RuleFile& file, std::ostream& out) {
    Json remarks = Json::array();
    for (const RuleRemark& remark : file.remarks)
        remarks.push_back({{"place", remark.place}, {"text", remark.text}});
    const Json document = {
        {"usable", file.rules != nullptr}, {"error", file.error}, {"remarks", std::move(remarks)}};
    out << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace

ExitCode RunRulesInit(const RulesOptions& options, std::ostream& out, std::ostream& errors) {
    std::error_code error;
    if (std::filesystem::exists(options.file, error)) {
        errors << "kyclash: " << PathText(options.file) << ": exists already\n";
        return kExitWrongUse;
    }
    const std::filesystem::path source = DefaultRulesFile();
    std::ostringstream rules;
    if (!(rules << std::ifstream(source, std::ios::binary).rdbuf())) {
        errors << "kyclash: " << PathText(source) << ": cannot be read\n";
        return kExitUnreadable;
    }
    if (const auto reason = ReplaceFile(options.file, rules.str())) {
        errors << "kyclash: " << *reason << '\n';
        return kExitUnreadable;
    }
    out << PathText(options.file) << ": default rules written\n";
    return kExitDone;
}

ExitCode RunRulesShow(const RulesOptions& options, std::ostream& out, std::ostream& errors) {
    if (!UseSystemRoot(options.systemRoot, errors)) return kExitUnreadable;
    const RuleFile file = ReadRuleFile(options.file);
    if (!file.rules) {
        errors << "kyclash: " << file.error << '\n';
        return kExitUnreadable;
    }
    if (options.format == ReportFormat::Json) {
        WriteRuleJson(*file.rules->GetRule(), out);
    } else {
        WriteRuleMatrix(*file.rules->GetRule(), out);
    }
    return kExitDone;
}

ExitCode RunRulesValidate(const RulesOptions& options, std::ostream& out, std::ostream& errors) {
    if (!UseSystemRoot(options.systemRoot, errors)) return kExitUnreadable;
    const RuleFile file = ReadRuleFile(options.file);
    const bool isSound = file.rules && file.remarks.empty();
    if (options.format == ReportFormat::Json) {
        WriteRemarksJson(file, out);
        return isSound ? kExitDone : kExitUnreadable;
    }
    for (const RuleRemark& remark : file.remarks)
        out << remark.place << ": " << remark.text << '\n';
    if (!file.rules) errors << "kyclash: " << file.error << '\n';
    if (isSound) out << PathText(options.file) << ": no remarks\n";
    return isSound ? kExitDone : kExitUnreadable;
}

}  // namespace kyclash
