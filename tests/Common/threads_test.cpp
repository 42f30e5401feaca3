// Several threads at once, each opening, reading, filling, exporting and writing back rasters of
// its own, while two more scan one shared shape map: each must get what it gets alone. Under
// ThreadSanitizer this also proves that they share no unguarded state.

#include <zephra/Common/zpPolyMap.h>
#include <zephra/Export/zplArcInfoGridASCIIExporter.h>
#include <zephra/Export/zplXYZAsciiExporter.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>
#include <locale.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "support/ImageSupport.h"
#include "support/ShapeSupport.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

namespace fs = std::filesystem;
using test::Box;

constexpr int32_t kWidth = 48;
constexpr int32_t kHeight = 36;
constexpr int kWorkers = 4;

// What a worker filled and every file it left, by name.
struct TOutcome {
  bool CommaLocale = false;
  std::vector<float> Filled;
  std::map<std::string, std::string> Files;
  std::string Error;
};

void Work(const fs::path& folder, int32_t worker, const std::string& shapeFile, TOutcome& out) {
  fs::create_directories(folder);
  const TImageHeader header = test::GridHeader({kWidth, kHeight, 0, 0, 0.25f, 0.25f});
  const std::string name = (folder / "cells.img").string();
  auto made = TRealImage::Create(name, &header);
  for (int32_t r = 1; r <= kHeight; ++r) {
    for (int32_t c = 1; c <= kWidth; ++c) {
      made->WriteCR(c, r, static_cast<float>(worker * 1000 + r * c) / 8);
    }
  }
  made->Close();

  auto image = TRealImage::Open(name, false);
  auto fill = TRealImage::Create("", image->Header());
  fill->FillShape(shapeFile, {1.5f, 2.5f, 3.5f + static_cast<float>(worker), 4.5f});
  for (int32_t i = 0; i < fill->NumRecs; ++i) {
    out.Filled.push_back(fill->BufferRead(i));
  }
  TArcInfoGridASCIIExporter().ExportImage(fill.get(), (folder / "fill.asc").string(), {});
  TXYZAsciiExporter().ExportImage(fill.get(), (folder / "fill.xyz").string(), {});
  image->WriteCR(2, 3, -1.0f);
  image->Close();

  for (const auto& entry : fs::directory_iterator(folder)) {
    out.Files[entry.path().filename().string()] = test::ReadFileBytes(entry.path().string());
  }
}

// Worker 0 writes its numbers with the decimal-comma locale of its own thread (where that is
// installed) while the others write points at the same time.
TOutcome RunWorker(const fs::path& folder, int32_t worker, const std::string& shapeFile) {
  TOutcome out;
  const locale_t comma =
      worker == 0 ? newlocale(LC_NUMERIC_MASK, test::kCommaLocale, locale_t{}) : locale_t{};
  const locale_t previous = comma != locale_t{} ? uselocale(comma) : locale_t{};
  out.CommaLocale = comma != locale_t{};
  try {
    Work(folder, worker, shapeFile, out);
  } catch (const std::exception& e) {
    out.Error = e.what();
  }
  if (comma != locale_t{}) {
    uselocale(previous);
    freelocale(comma);
  }
  return out;
}

// Where every cell point of the grid lies against every shape of the map, scanned row by row as
// a fill does, with row caches of its own or with the plain point test.
std::vector<int8_t> Scan(const TPolyMap& map, bool cached) {
  std::vector<TSHPPolygon::TRowCache> rows(static_cast<size_t>(map.GetShapeCount()));
  std::vector<int8_t> found;
  for (int32_t r = 0; r < kHeight; ++r) {
    for (int32_t c = 0; c < kWidth; ++c) {
      const TFloatPoint p{0.25f * static_cast<float>(c), 9.0f - 0.25f * static_cast<float>(r)};
      for (int32_t i = 0; i < map.GetShapeCount(); ++i) {
        const TSHPPolygon* shape = map.GetShape(i);
        found.push_back(cached ? shape->PointInPoly(p, rows[static_cast<size_t>(i)])
                               : shape->PointInPoly(p));
      }
    }
  }
  return found;
}

TEST(Threads, WorkersAndScansOfOneSharedShapeMapGetWhatTheyGetAlone) {
  const test::TTempDir dir;
  const std::string shapes = test::WriteShapefile(
      dir.File("shapes"), {{Box(1, 1, 7, 6), Box(2, 2, 4, 4)},
                           {Box(5, 3, 11, 8)},
                           {{{8, 0.5}, {11.5, 2}, {9, 2.75}, {8.5, 1.25}, {8, 0.5}}}});
  const TPolyMap map(shapes, 0);

  std::vector<TOutcome> alone;
  for (int32_t k = 0; k < kWorkers; ++k) {
    alone.push_back(RunWorker(dir.Path() / ("alone" + std::to_string(k)), k, shapes));
  }
  const std::vector<int8_t> scanned = Scan(map, true);

  std::vector<TOutcome> together(kWorkers);
  std::vector<std::vector<int8_t>> sharedScans(2);
  {
    std::vector<std::jthread> threads;
    for (int32_t k = 0; k < kWorkers; ++k) {
      threads.emplace_back([&, k] {
        together[k] = RunWorker(dir.Path() / ("together" + std::to_string(k)), k, shapes);
      });
    }
    for (size_t s = 0; s < sharedScans.size(); ++s) {
      threads.emplace_back([&, s] { sharedScans[s] = Scan(map, s == 0); });
    }
  }

  for (int32_t k = 0; k < kWorkers; ++k) {
    SCOPED_TRACE("worker " + std::to_string(k));
    ASSERT_EQ(alone[k].Error, "");
    EXPECT_EQ(together[k].Error, "");
    EXPECT_TRUE(together[k].Filled == alone[k].Filled);
    EXPECT_EQ(together[k].Files.size(), 4u);  // the raster pair and the fill's two exports
    EXPECT_TRUE(together[k].Files == alone[k].Files);
  }
  // The workers' data differ, so that no mix-up between them could hide, their fills hold every
  // shape's value, and one wrote its numbers with a comma while the others wrote points.
  EXPECT_TRUE(alone[1].Files != alone[2].Files);
  for (const float value : {1.5f, 3.5f, 4.5f}) {  // the hole's own 2.5 fills nothing
    EXPECT_NE(std::count(alone[0].Filled.begin(), alone[0].Filled.end(), value), 0) << value;
  }
  if (alone[0].CommaLocale) {
    EXPECT_NE(alone[0].Files["fill.asc"].find("cellsize     0,2500"), std::string::npos);
    EXPECT_NE(alone[1].Files["fill.asc"].find("cellsize     0.2500"), std::string::npos);
  }
  for (const auto& shared : sharedScans) {
    EXPECT_TRUE(shared == scanned);
  }
  for (const int8_t where : {-1, 0, 1}) {  // outside, on an edge, inside all met
    EXPECT_NE(std::find(scanned.begin(), scanned.end(), where), scanned.end()) << int{where};
  }
}

}  // namespace
}  // namespace zephra
