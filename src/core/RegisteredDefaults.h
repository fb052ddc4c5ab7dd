#pragma once

#include <QVariantHash>

namespace orv {

// The values keys read as until something is stored for them, registered before anything reads
// the preferences.
//
// Almost all are decimal strings ("0", "1", "128"...), read through the typed getters of
// Preferences; fixFinderDateOnImport is a real boolean and the four window divider and four grid
// size defaults are real numbers.
//
// The keyed-archive defaults are QByteArrays holding CBOR, read with Preferences::archiveForKey
// and written with Preferences::setArchive. Their shapes (text keys exactly as below):
//   specValues_7, specValues2  array of maps {"cam": text, "extension": text, "tag": text}
//   folderColors_7             array of colours, each an array [red, green, blue, alpha] of
//                              numbers from 0 to 1, calibrated RGB
//   advancedBookmarks_7        array of bookmark entries, each an array of at least 3 elements
//   renameTemplates_7          array of templates {"stringParts": [part...], "options": {"1.tif":
//                              n, "2.tif": n, "7.tif": n}}, a part being {"kind": "text" or
//                              "graphic", "textId": the literal or the element such as "7.tif"}
//   filterTemplates            array of {"key": text, "name": localised text, "predicate":
//                              {"compound": "AND", "subpredicates": [predicate text...]}}
QVariantHash registeredDefaults();

} // namespace orv
