#include "framework/windows/WindowMessages.h"
#include "framework/windows/desktop/UserActions.h"
#include "workbench/desktop/ControlMakers.h"
#include "workbench/desktop/ControlShape.h"

namespace workbench::desktop {
namespace {

/// A button of the toolkit whose state is the record's alone: what a click changes, the record says.
template <class Base>
class ButtonView final : public Base, public ControlView {
  public:
    ButtonView(HWND window, ViewKeeper& keeper, QWidget* parent)
        : Base(parent)
        , ControlView(window, keeper) {
        QObject::connect(this, &QAbstractButton::clicked, this, [this] {
            framework::user::press(handle());
            refresh();
        });
    }

    QWidget& widget() override { return *this; }

    void follow(const framework::WindowRecord& record, unsigned) override {
        if (this->text() != qText(record.text)) {
            this->setText(qText(record.text));
            this->setShortcut({}); // mnemonics are the dialog's
        }
        this->setLayoutDirection(record.style & BS_LEFTTEXT ? Qt::RightToLeft : Qt::LeftToRight);
        followKind(record);
    }

  protected:
    void nextCheckState() override {}

  private:
    void followKind(const framework::WindowRecord& record) {
        if constexpr (std::is_same_v<Base, QPushButton>) {
            this->setAutoDefault(false);
            this->setDefault(isDefaultButton(record));
            this->setCheckable((record.style & BS_PUSHLIKE) != 0);
            this->setChecked(record.check != BST_UNCHECKED);
        } else if constexpr (std::is_same_v<Base, QCheckBox>) {
            this->setCheckState(record.check == BST_INDETERMINATE ? Qt::PartiallyChecked
                                : record.check                    ? Qt::Checked
                                                                  : Qt::Unchecked);
        } else {
            this->setAutoExclusive(false);
            this->setChecked(record.check != BST_UNCHECKED);
        }
    }
};

} // namespace

ControlView* makePush(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new ButtonView<QPushButton>(window, keeper, parent);
}

ControlView* makeCheck(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new ButtonView<QCheckBox>(window, keeper, parent);
}

ControlView* makeRadio(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new ButtonView<QRadioButton>(window, keeper, parent);
}

} // namespace workbench::desktop
