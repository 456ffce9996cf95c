// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "desk/core/Session.h"
#include "desk/view/KindNames.h"

class QAction;
class QSpinBox;

namespace desk {

class ClashDrawing;
class DetailPane;
class Prompts;
class SceneView;
struct ShownClash;

/// The pane of the model: the 3-D view with its tools, and in words what it shows. It is told which
/// clash or opening that is.
class ScenePane : public QWidget {
    Q_OBJECT

  public:
    ScenePane(Session& session, const KindNames& names, Prompts& prompts,
              QWidget* parent = nullptr);
    ~ScenePane() override;

    /// Takes the session's models anew and shows the whole building.
    void ShowModels();
    /// Shows a clash from the view that is kept with it, else from near by. Null: none.
    void ShowClash(Session::Item* clash);
    /// Shows an opening like a clash of one component, at the middle of its box. Null: none.
    void ShowOpening(const Session::Hole* opening);

    /// No view can be kept with a clash any more, or again.
    void SetReadOnly(bool readOnly);

    SceneView& View() { return *view_; }

  signals:
    /// The view was kept with the clash on display.
    void ViewKept();

  private:
    void BuildActions();
    void Show(const ShownClash& shown);
    void ShowNothing();
    void KeepView();
    void Export();
    void UpdateSection();
    void UpdateActions();

    Session& session_;
    Prompts& prompts_;
    bool readOnly_ = false;
    Session::Item* clash_ = nullptr;  // on display; null for an opening
    // Where what is on display is; nothing when that is the whole building.
    std::optional<std::pair<int, std::wstring>> floor_;
    QSpinBox* sectionHeight_;
    SceneView* view_;
    DetailPane* details_;
    std::unique_ptr<ClashDrawing> drawing_;

    QAction* fitAll_ = nullptr;
    QAction* fitClash_ = nullptr;
    QAction* keepView_ = nullptr;
    QAction* section_ = nullptr;
    QAction* export_ = nullptr;
};

}  // namespace desk
