#pragma once

#include "app/NameChangeCommand.h"

#include <QDialog>

#include <array>

class QComboBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace orv {

class AppController;
class MySinglePic;

// The rename sheet: the template (typed, or one of the saved ones), its additional texts, and
// the old and new names side by side as they would come out, before anything is renamed. The
// run goes through the owner's undo stack, so undo puts the names back.
class RenameSheet : public QDialog
{
    Q_OBJECT
public:
    // `pics`: the items to rename, in any order.
    RenameSheet(AppController &controller, QList<MySinglePic *> pics, NameChangeCommand::Changed changed,
                QWidget *parent = nullptr);

private:
    void refreshSampleNames();
    void rename();

    AppController &m_controller;
    QList<MySinglePic *> m_pics;
    NameChangeCommand::Changed m_changed;
    std::vector<RenameItem> m_plan;
    QComboBox *m_templates;
    QLineEdit *m_template;
    std::array<QLineEdit *, 3> m_texts{};
    QTableWidget *m_samples;
    QLabel *m_alert;
    QDialogButtonBox *m_buttons;
    QPushButton *m_renameButton = nullptr;
};

} // namespace orv
