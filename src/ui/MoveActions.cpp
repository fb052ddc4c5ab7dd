#include "ui/MoveActions.h"

#include "app/AppController.h"
#include "core/LogController.h"
#include "core/MySinglePic.h"
#include "folders/MyDroppedFolders.h"
#include "folders/MySingleFolder.h"
#include "formats/SaveJournal.h"
#include "ui/EditActions.h"

#include <QAction>
#include <QDir>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>

namespace orv {

MoveActions::MoveActions(AppController &controller, const EditActions &selection, QWidget *window)
    : QObject(window), m_controller(controller), m_selection(selection), m_window(window)
{
}

void MoveActions::addTo(QMenu &menu)
{
    QAction *action = menu.addAction(tr("Move to Folder…"), this, &MoveActions::moveSelectionToFolder);
    action->setObjectName(QStringLiteral("moveToFolderAction"));
    action->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F));
}

void MoveActions::moveSelectionToFolder()
{
    const QList<MySinglePic *> pics = m_selection.selectedPics();
    if (pics.isEmpty())
        return;
    QList<MySingleFolder *> targets = m_controller.theDataSource().droppedFolders();
    // A folder that holds every selected item is no place to move them to.
    targets.removeIf([&pics](const MySingleFolder *folder) {
        return std::all_of(pics.cbegin(), pics.cend(), [folder](const MySinglePic *pic) {
            const MySinglePic *master = pic->bundleMasterImage ? pic->bundleMasterImage : pic;
            return master->spSingleFolder == folder;
        });
    });
    if (targets.isEmpty()) {
        QMessageBox::information(m_window, tr("Move to Folder"),
                                 tr("Import the folder the items are to go to first: items move only "
                                    "between imported folders."));
        return;
    }
    QStringList choices;
    for (const MySingleFolder *folder : std::as_const(targets))
        choices << QDir::toNativeSeparators(folder->sfFolderPath);
    bool chosen = false;
    const QString choice =
        QInputDialog::getItem(m_window, tr("Move to Folder"),
                              tr("Move %n item(s), with their grouped files and sidecars, to:", nullptr,
                                 int(pics.size())),
                              choices, 0, false, &chosen);
    if (!chosen)
        return;
    MySingleFolder *target = targets.at(choices.indexOf(choice));
    const MoveOutcome outcome = m_controller.moving().movePics(pics, *target, SaveJournal::defaultPath());
    if (outcome.problems.isEmpty())
        return;
    const QString report = tr("Move to Folder: these items stayed where they are:") + QStringLiteral("\n\t")
                           + outcome.problems.join(QStringLiteral("\n\t")) + QLatin1Char('\n');
    m_controller.log().setCurentError(report);
    m_controller.log().updateLogOnDiskWithErrorLog(report);
    QMessageBox box(QMessageBox::Warning, tr("Move to Folder"),
                    tr("%n item(s) stayed where they are.", nullptr, int(outcome.problems.size())),
                    QMessageBox::Ok, m_window);
    box.setDetailedText(outcome.problems.join(QLatin1Char('\n')));
    box.exec();
}

} // namespace orv
