// SPDX-License-Identifier: Apache-2.0
#include "desk/view/ScopePane.h"

#include "KYCollisionBase/platform/widgets/CThreeStateTree.h"

#include <QAction>
#include <QLabel>
#include <QToolBar>
#include <QVBoxLayout>

#include "desk/view/KindTree.h"
#include "desk/view/ToolActions.h"

namespace desk {

ScopePane::ScopePane(const KindNames& names, QWidget* parent)
    : QWidget(parent), kinds_(new KindTree(names, this)), floors_(new CThreeStateTree(this)) {
    kinds_->setObjectName("kinds");
    floors_->setObjectName("floors");
    floors_->setRootIsDecorated(false);
    floors_->setAccessibleName(tr("Floors to check"));
    QAction* expand =
        NewAction(*this, tr("Open level"), "expandLevel", QKeySequence("Ctrl+Shift+Right"),
                  tr("Open the next level of the tree"));
    QAction* collapse =
        NewAction(*this, tr("Close level"), "collapseLevel", QKeySequence("Ctrl+Shift+Left"),
                  tr("Close the deepest open level of the tree"));
    auto* levels = new QToolBar(this);
    levels->addActions({expand, collapse});

    auto* column = new QVBoxLayout(this);
    column->addWidget(new QLabel(tr("<b>Kinds to check</b>"), this));
    column->addWidget(levels);
    column->addWidget(kinds_, 3);
    column->addWidget(new QLabel(tr("<b>Floors to check</b>"), this));
    column->addWidget(floors_, 1);
    connect(expand, &QAction::triggered, kinds_, [this] { kinds_->ExpandByLevel(true); });
    connect(collapse, &QAction::triggered, kinds_, [this] { kinds_->ExpandByLevel(false); });
    connect(kinds_, &KindTree::CheckChanged, this, &ScopePane::ChoiceChanged);
    connect(floors_, &CThreeStateTree::CheckChanged, this, &ScopePane::ChoiceChanged);
}

void ScopePane::ShowModels(const Session& session) {
    kinds_->SetKinds(session.Kinds());
    floors_->DeleteAllItems();
    for (const SCollisionFloor& floor : session.Floors())
        floors_->SetCheck(floors_->InsertItem(floor.name, nullptr), true);
}

CheckRequest ScopePane::Chosen() const {
    return {CheckedFloors(), kinds_->CheckedKinds()};
}

std::vector<std::wstring> ScopePane::CheckedFloors() const {
    std::vector<std::wstring> names;
    for (HTREEITEM floor = floors_->GetRootItem(); floor != nullptr;
         floor = floors_->GetNextSiblingItem(floor)) {
        if (floors_->GetCheckState(floor) == CThreeStateTree::CheckState::kChecked)
            names.push_back(floors_->GetItemText(floor));
    }
    return names;
}

}  // namespace desk
