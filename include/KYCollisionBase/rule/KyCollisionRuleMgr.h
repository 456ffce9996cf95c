// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/rule/IKyCollisionFilter.h"

#include <memory>
#include <string>

class IXMLTree;

namespace KYCOLLISION::Rule {

class KyCollisionMode;
class KyCollisionRule;
class KyCollisionRuleItem;
struct KyExcludeItem;

/// Holds the rule set of a check run and reads and writes it as XML.
///
/// The root element "CollisionRule" holds one "Specialty" (attribute "name") per specialty, and
/// that one "RuleItem" per item, the valid ones first, with the attributes "gjtype" (the category
/// path) and "isvalid" ("true" in any case for a valid item). A rule item holds, in any order,
/// - "Filter": the filter type in "type" (1 for KyAttrRangeFilter, 0 for none) and its text form;
/// - "Mode": the mode type in "type", and as text the tolerance (mm), which counts for type 2 only;
/// - "Excludes": per exclusion one element with a path of one to three parts as its text; a text of
///   another number of parts is passed over.
/// Of several "Filter" or "Mode" elements the last one counts; several "Excludes" add up. Unknown
/// elements inside a rule item are passed over. The root's children are read by position: as many
/// as there are "Specialty" elements, whatever their tag.
///
/// The GUID, name and type of a rule set, and exclusions under specialties that the category tree
/// does not know, are not part of the file.
///
/// Copies share the rule set; the last one destroys it.
class KYCB_API KyCollisionRuleMgr {
  public:
    /// Holds no rule set.
    KyCollisionRuleMgr();
    ~KyCollisionRuleMgr();
    KyCollisionRuleMgr(const KyCollisionRuleMgr&);
    KyCollisionRuleMgr& operator=(const KyCollisionRuleMgr&);

    /// Reads a rule set from a file and holds it in place of the one held, which is destroyed.
    /// False when the file cannot be read as XML, its root is not "CollisionRule", or the "gjtype"
    /// of any item is no path that an item can have; the rule set held before stays then.
    bool InitByXmlPath(const std::wstring& path);

    /// The same for a document given as text.
    bool InitByXmlString(const std::wstring& text);

    /// Writes the rule set to a file, which is replaced as a whole or not at all. False without a
    /// rule set, or when the file cannot be written. True without writing anything when no XML tree
    /// can be had. Characters that XML forbids (control characters but tab and line ends, unpaired
    /// surrogates) are written as U+FFFD; every other text comes back as it was.
    bool SaveToXMLFile(const std::wstring& path) const;

    /// The rule set held, or null. It stays the manager's.
    const KyCollisionRule* GetRule() const;

    /// Holds `rule` from now on and owns it; null for none. The one held before is destroyed when
    /// `destroyOld` says so, else it is the caller's again. The rule set that is held already stays
    /// as it is, whatever `destroyOld` says.
    void SetRule(KyCollisionRule* rule, bool destroyOld);

    /// The valid item of a category path, or null.
    const KyCollisionRuleItem* GetRuleItem(std::wstring path);

  private:
    struct DestroyRule {
        bool owns = true;
        void operator()(KyCollisionRule* rule) const;
    };

    bool AnalyzeRule(IXMLTree* tree);
    bool AnalyzeSpecialty(IXMLTree* tree, KyCollisionRule& rule);
    KyCollisionRuleItem* AnalyzeRuleItem(IXMLTree* tree, bool& valid);
    void AnalyzeRuleItemPart(IXMLTree* tree, int index, KyCollisionRuleItem& item);
    void AnalyzeExcludes(IXMLTree* tree, KyCollisionRuleItem& item);
    IKyCollisionFilter* AnalyzeFilter(EnumFilterType type, const std::wstring& text);
    bool AnalyzeCollisionMode(const std::wstring& text, KyCollisionMode& mode);
    bool AnalyzeRuleExcludeItem(const std::wstring& text, KyExcludeItem& item);
    void ReAnalyzeRule(IXMLTree* tree, const KyCollisionRule* rule) const;
    void ReAnalyzeRuleItem(IXMLTree* tree, const KyCollisionRuleItem* item, bool valid) const;

    std::shared_ptr<KyCollisionRule> rule_;
};

}  // namespace KYCOLLISION::Rule
