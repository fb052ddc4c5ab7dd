#include "selection/PicKinds.h"

#include "core/MySinglePic.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace orv {

namespace {

QString extensionOf(const MySinglePic &pic) { return QFileInfo(pic.spName).suffix().toUpper(); }

} // namespace

QString PicKinds::key(PicKind kind)
{
    switch (kind) {
    case PicKind::Photo: return QStringLiteral("quickSelections_typePic");
    case PicKind::Movie: return QStringLiteral("quickSelections_typeMov");
    case PicKind::Group: return QStringLiteral("quickSelections_typeGrp");
    case PicKind::Sidecar: break;
    }
    return QStringLiteral("quickSelections_typeCar");
}

QString PicKinds::name(PicKind kind)
{
    switch (kind) {
    case PicKind::Photo: return QCoreApplication::translate("QuickSelections", "Photos");
    case PicKind::Movie: return QCoreApplication::translate("QuickSelections", "Movies");
    case PicKind::Group: return QCoreApplication::translate("QuickSelections", "Groups");
    case PicKind::Sidecar: break;
    }
    return QCoreApplication::translate("QuickSelections", "Sidecars");
}

PicKind PicKinds::mediumOf(const MySinglePic &pic)
{
    if (pic.bundleDependentImage)
        return PicKind::Group;
    return pic.isMovie() ? PicKind::Movie : PicKind::Photo;
}

QStringList PicKinds::typesOf(const MySinglePic &pic, PicKind kind)
{
    if (kind == PicKind::Sidecar) {
        QStringList types;
        for (const QString &extension : pic.spSidecarExtensions)
            if (extension != MySinglePic::isXmpMaster)
                types.append(extension.toUpper());
        return types;
    }
    if (mediumOf(pic) != kind)
        return {};
    if (kind == PicKind::Group)
        return {extensionOf(pic) + QLatin1Char('+') + extensionOf(*pic.bundleDependentImage)};
    return {extensionOf(pic)};
}

} // namespace orv
