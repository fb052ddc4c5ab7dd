#pragma once

// Builders of real media files with exact tags at known offsets. Each answers a MediaFile: the
// bytes, where every value was placed, and a way to write it into a folder.
//
//   TiffShape tags;
//   tags.order = ByteOrder::Motorola;
//   tags.dateTimeOriginal = Stamp::text("2024:05:01 10:00:00");
//   const MediaFile jpeg = buildJpeg({.exif = tags});
//   const QString path = jpeg.write(dir.path());
//   // jpeg.offsets.dateTimeOriginal is where the 20 stamp bytes begin

#include "support/JpegBuilder.h"
#include "support/MediaFile.h"
#include "support/PngBuilder.h"
#include "support/TiffBuilder.h"
#include "support/WebpBuilder.h"
#include "support/XmpBuilder.h"
