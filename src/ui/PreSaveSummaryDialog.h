#pragma once

#include "core/PreSaveSummary.h"

#include <QDialog>
#include <QImage>

#include <functional>

class QCheckBox;
class QTreeWidget;

namespace orv {

// The look before a save writes anything: one row per item with its thumbnail, each date the
// save changes in its files (what they hold now, what they will hold, and the rule when the date
// does not simply move with the item), and what the pre-check found. Save goes on; Cancel
// leaves every file untouched, and the items chosen in the table are the ones to look at next.
class PreSaveSummaryDialog : public QDialog
{
    Q_OBJECT
public:
    // The thumbnail an item has now; a null image where it has none yet.
    using Thumbnail = std::function<QImage(const MySinglePic &)>;

    // everySave: the summary comes before every save, not only when the pre-check found
    // something; the user can change that here.
    PreSaveSummaryDialog(const PreSaveSummary &summary, const Thumbnail &thumbnail, bool everySave,
                         QWidget *parent = nullptr);

    bool showsEverySave() const;
    // The items of the rows selected, in table order.
    QList<MySinglePic *> chosenPics() const;
    // Every item the table lists.
    QList<MySinglePic *> listedPics() const;

private:
    void fillTable(const PreSaveSummary &summary, const Thumbnail &thumbnail);

    QTreeWidget *m_table;
    QCheckBox *m_everySave;
};

} // namespace orv
