#include "selection/NaturalNameOrder.h"

#include <QLocale>

namespace orv {

QCollator naturalNameCollator()
{
    const QLocale system;
    QCollator collator(system.language() == QLocale::C ? QLocale(QLocale::English) : system);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

} // namespace orv
