#include "support/XmpBuilder.h"

#include <set>
#include <stdexcept>

namespace orv::test {
namespace {

QByteArray namespaceUri(const QString &prefix)
{
    static const std::map<QString, QByteArray> uris = {
        {QStringLiteral("exif"), "http://ns.adobe.com/exif/1.0/"},
        {QStringLiteral("xmp"), "http://ns.adobe.com/xap/1.0/"},
        {QStringLiteral("tiff"), "http://ns.adobe.com/tiff/1.0/"},
        {QStringLiteral("photoshop"), "http://ns.adobe.com/photoshop/1.0/"},
        {QStringLiteral("crs"), "http://ns.adobe.com/camera-raw-settings/1.0/"},
    };
    const auto found = uris.find(prefix);
    if (found == uris.end())
        throw std::invalid_argument("no namespace known for XMP prefix " + prefix.toStdString());
    return found->second;
}

QByteArray namespaceDeclarations(const std::vector<XmpProperty> &properties)
{
    QByteArray declarations;
    std::set<QString> declared;
    for (const XmpProperty &property : properties) {
        const QString prefix = property.name.section(u':', 0, 0);
        if (declared.insert(prefix).second)
            declarations += "\n   xmlns:" + prefix.toUtf8() + "=\"" + namespaceUri(prefix) + '"';
    }
    return declarations;
}

} // namespace

XmpPacket buildXmp(const XmpShape &recipe)
{
    XmpPacket packet;
    QByteArray &out = packet.bytes;
    if (recipe.wrapped)
        out += "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n";
    out += "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
           " <rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
           "  <rdf:Description rdf:about=\"\"";
    out += namespaceDeclarations(recipe.properties);

    const auto placeValue = [&](const XmpProperty &property) {
        packet.valueOffsets[property.name] = quint32(out.size());
        out += property.value.toUtf8();
    };
    if (recipe.form == XmpForm::Attributes) {
        for (const XmpProperty &property : recipe.properties) {
            out += "\n   " + property.name.toUtf8() + "=\"";
            placeValue(property);
            out += '"';
        }
        out += "/>\n";
    } else {
        out += ">\n";
        for (const XmpProperty &property : recipe.properties) {
            const QByteArray name = property.name.toUtf8();
            out += "   <" + name + '>';
            placeValue(property);
            out += "</" + name + ">\n";
        }
        out += "  </rdf:Description>\n";
    }
    out += " </rdf:RDF>\n</x:xmpmeta>\n";
    if (recipe.wrapped)
        out += "<?xpacket end=\"w\"?>";
    return packet;
}

void placeXmp(MediaOffsets &offsets, quint32 packetStart, const XmpPacket &packet)
{
    offsets.xmpPacket = packetStart;
    offsets.xmpValues.clear();
    for (const auto &[name, offset] : packet.valueOffsets)
        offsets.xmpValues[name] = packetStart + offset;
}

MediaFile buildXmpSidecar(const XmpShape &recipe)
{
    const XmpPacket packet = buildXmp(recipe);
    MediaFile file{packet.bytes, {}, QStringLiteral("xmp")};
    placeXmp(file.offsets, 0, packet);
    return file;
}

} // namespace orv::test
