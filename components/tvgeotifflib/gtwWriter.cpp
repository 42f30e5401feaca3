#include "gtwWriter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "gtwLayout.h"
#include "gtwTiffTags.h"

namespace tvgeotifflib {

namespace {

// libtiff writes an image without rows or columns, but no reader, libtiff included, opens it.
bool ValidGeometry(int32_t width, int32_t height, float originX, float originY, float cellSize) {
  return width > 0 && height > 0 && std::isfinite(originX) && std::isfinite(originY) &&
         std::isfinite(cellSize) && cellSize > 0;
}

}  // namespace

std::unique_ptr<TGeoTiffWriter> TGeoTiffWriter::Create(const char* fileName, const char* mode) {
  if (fileName == nullptr || mode == nullptr) {
    return nullptr;
  }
  // "w" leaves the choice of BigTIFF to the raster's size, "w8" makes it always.
  const bool chosenBySize = std::strcmp(mode, "w") == 0;
  const bool bigTiff = std::strcmp(mode, "w8") == 0;
  if (!chosenBySize && !bigTiff) {
    return nullptr;
  }
  auto file = TOutputFile::Create(fileName);
  if (!file) {
    return nullptr;
  }
  return std::make_unique<TGeoTiffWriter>(TKey{}, std::move(file), bigTiff);
}

bool TGeoTiffWriter::InitData(int32_t width, int32_t height, float originX, float originY,
                              float cellSize, uint32_t latLong) {
  if (FTiff || FBroken || !ValidGeometry(width, height, originX, originY, cellSize)) {
    return false;
  }
  FGeometry = {.Width = static_cast<uint32_t>(width),
               .Height = static_cast<uint32_t>(height),
               .OriginX = WidenAsWritten(originX),
               .OriginY = WidenAsWritten(originY),
               .CellSize = WidenAsWritten(cellSize),
               .LatLong = latLong != 0};
  FRowsPerStrip = RowsPerStrip(FGeometry.Width, FGeometry.Height);
  if (!OpenImage()) {
    FBroken = true;
    return false;
  }
  return true;
}

bool TGeoTiffWriter::OpenImage() {
  const bool bigTiff = FForceBigTiff || NeedsBigTiff(FGeometry.Width, FGeometry.Height);
  FTiff = FFile->OpenTiff(bigTiff ? "w8" : "w");
  if (!FTiff) {
    return false;
  }
  FQueue = std::make_unique<TStripQueue>(FTiff.get(), FGeometry, StripThreads());
  return WriteImageTags(FTiff.get(), FGeometry) && WriteGeoreference(FTiff.get(), FGeometry);
}

bool TGeoTiffWriter::WriteRow(int32_t row, const float* cells) {
  if (!Ready() || cells == nullptr || row < 0 || static_cast<uint32_t>(row) < FNextRow ||
      static_cast<uint32_t>(row) >= FGeometry.Height) {
    return false;
  }
  if (!PadTo(static_cast<uint32_t>(row))) {
    return false;
  }
  return WriteBufferedRow(cells);
}

bool TGeoTiffWriter::PadTo(uint32_t row) {
  while (FNextRow < row) {
    if (!WriteBufferedRow(nullptr)) {
      return false;
    }
  }
  return true;
}

// A null row is a row of no-data.
bool TGeoTiffWriter::WriteBufferedRow(const float* cells) {
  if (FNextRow % FRowsPerStrip == 0) {
    FStrip = FQueue->Next();
  }
  if (FStrip == nullptr) {
    FBroken = true;
    return false;
  }
  if (cells != nullptr) {
    FStrip->insert(FStrip->end(), cells, cells + FGeometry.Width);
  } else {
    FStrip->insert(FStrip->end(), FGeometry.Width, std::numeric_limits<float>::quiet_NaN());
  }
  ++FNextRow;
  const bool stripFull = FNextRow % FRowsPerStrip == 0 || FNextRow == FGeometry.Height;
  if (stripFull && !FQueue->Submit()) {
    FBroken = true;
    return false;
  }
  return true;
}

bool TGeoTiffWriter::Finish(std::unique_ptr<TGeoTiffWriter> writer) {
  bool finished = writer->Ready() && writer->PadTo(writer->FGeometry.Height) &&
                  writer->FQueue->Drain() && TIFFWriteDirectory(writer->FTiff.get()) == 1;
  writer->FQueue.reset();
  writer->FTiff.reset();
  finished = finished && writer->FFile->Commit();
  if (!finished) {
    writer->FFile->Remove();
  }
  return finished;
}

}  // namespace tvgeotifflib
