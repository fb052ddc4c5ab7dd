#include "ui/TrashActions.h"

#include "app/AppController.h"
#include "core/LogController.h"
#include "ui/EditActions.h"

#include <QAction>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>

namespace orv {

TrashActions::TrashActions(AppController &controller, const EditActions &selection, QWidget *window)
    : QObject(window), m_controller(controller), m_selection(selection), m_window(window)
{
}

void TrashActions::addTo(QMenu &menu)
{
    m_action = menu.addAction(tr("Move to Trash"), this, &TrashActions::moveSelectionToTrash);
    m_action->setObjectName(QStringLiteral("moveToTrashAction"));
    m_action->setShortcuts({QKeySequence::Delete, QKeySequence(Qt::CTRL | Qt::Key_Backspace)});
}

void TrashActions::moveSelectionToTrash()
{
    const QList<MySinglePic *> pics = m_selection.selectedPics();
    if (pics.isEmpty())
        return;
    const TrashOutcome outcome = m_controller.trashing().movePicsToTrash(pics, *this);
    if (outcome.problems.isEmpty())
        return;
    // Kept in the error log like a save's problems, for the user to read later.
    const QString report = tr("Move to Trash: these files stayed where they are:") + QStringLiteral("\n\t")
                           + outcome.problems.join(QStringLiteral("\n\t")) + QLatin1Char('\n');
    m_controller.log().setCurentError(report);
    m_controller.log().updateLogOnDiskWithErrorLog(report);
    QMessageBox box(QMessageBox::Warning, tr("Move to Trash"),
                    tr("%n file(s) stayed where they are.", nullptr, int(outcome.problems.size())),
                    QMessageBox::Ok, m_window);
    box.setDetailedText(outcome.problems.join(QLatin1Char('\n')));
    box.exec();
}

bool TrashActions::deleteWithoutTrash(const QStringList &paths)
{
    QMessageBox box(QMessageBox::Question, tr("No Trash"),
                    tr("%n file(s) lie on a volume without a trash that can be written. Delete them "
                       "for good? This cannot be undone.",
                       nullptr, int(paths.size())),
                    QMessageBox::NoButton, m_window);
    box.setDetailedText(paths.join(QLatin1Char('\n')));
    QPushButton *remove = box.addButton(tr("Delete"), QMessageBox::DestructiveRole);
    box.setDefaultButton(box.addButton(QMessageBox::Cancel));
    box.exec();
    return box.clickedButton() == remove;
}

} // namespace orv
