// compare_data: the inputs and the floors of bench/compare.sh.
//
//   compare_data make DIR     writes the comparison's data into DIR (see below)
//   compare_data read FILE    the read floor: FILE into freshly allocated memory, every page
//   compare_data write FILE N the write floor: N bytes from memory into a new FILE
//   compare_data export grid|xyz IN OUT
//                             the library's own text exporter (four decimals) on the raster IN,
//                             as a host program calls it
//
// The data: a terrain-like 4000 x 4000 float raster on a 30 m plane grid with 5 % no-data (a
// lake and the corner beyond a coast), as the library's raster (terrain.doc/.img), as EHdr
// (terrain.bil/.hdr, the same cell bytes) and as an ArcInfo grid (terrain.asc); and a shapefile
// of 500 polygons of 1000 vertices each with a numeric "value" attribute (polygons.shp/.dbf).
// Everything follows from fixed seeds, so every run compares the same files.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <shapefil.h>

#include <zephra/zephra.h>

namespace fs = std::filesystem;
using namespace zephra;

namespace {

constexpr int32_t kSide = 4000;
constexpr float kCell = 30.0f;
constexpr float kMinX = 500000.0f;
constexpr float kMaxY = 6200000.0f;
constexpr float kNoData = -9999.0f;

float Terrain(int32_t c, int32_t r) {
  const double x = c / 400.0, y = r / 400.0;
  const double lake = std::hypot(c - 1200.0, r - 900.0);
  if (lake < 420.0 || c + r > 7330) {
    return kNoData;
  }
  const double height = 800.0 + 300.0 * std::sin(x * 1.3) * std::cos(y * 0.9) +
                        120.0 * std::sin(x * 4.1 + y * 2.7) + 35.0 * std::cos(x * 13.0 - y * 11.0) +
                        6.0 * std::sin(c * 0.37) * std::cos(r * 0.23);
  return static_cast<float>(std::round(height * 100.0) / 100.0);
}

TImageHeader TerrainHeader() {
  TImageHeader header;
  header.Width = header.Height = kSide;
  header.Minx = kMinX;
  header.Maxx = kMinX + kSide * kCell;
  header.Maxy = kMaxY;
  header.Miny = kMaxY - kSide * kCell;
  header.ResolutionX = header.ResolutionY = kCell;
  header.SetRefSystem("plane");
  header.RefUnits = "m";
  header.Flag = true;
  header.FlagValue = kNoData;
  return header;
}

void WriteTerrain(const fs::path& dir) {
  const TImageHeader header = TerrainHeader();
  const auto image = TRealImage::Create((dir / "terrain.img").string(), &header);
  TRange range{INFINITY, -INFINITY};
  for (int32_t r = 0; r < kSide; ++r) {
    for (int32_t c = 0; c < kSide; ++c) {
      const float height = Terrain(c, r);
      image->Buffer[static_cast<size_t>(r) * kSide + c] = height;
      if (height != kNoData) {
        range = {std::min(range.Min, height), std::max(range.Max, height)};
      }
    }
  }
  image->FirstWrite = false;  // the cells went straight into the buffer
  image->Header()->MinValue = range.Min;
  image->Header()->MaxValue = range.Max;
  TArcInfoGridASCIIExporter().ExportImage(image.get(), (dir / "terrain.asc").string(), nullptr);
  image->Close();
  // EHdr reads the same little-endian floats; its map point is the centre of the first cell.
  fs::copy_file(dir / "terrain.img", dir / "terrain.bil", fs::copy_options::overwrite_existing);
  std::ofstream hdr(dir / "terrain.hdr");
  hdr << std::fixed << std::setprecision(3) << "BYTEORDER I\nLAYOUT BIL\nNROWS " << kSide
      << "\nNCOLS " << kSide << "\nNBANDS 1\nNBITS 32\nPIXELTYPE FLOAT\nULXMAP "
      << kMinX + kCell / 2 << "\nULYMAP " << kMaxY - kCell / 2 << "\nXDIM " << kCell << "\nYDIM "
      << kCell << "\nNODATA " << kNoData << "\n";
  if (!hdr.flush()) {
    throw std::runtime_error("cannot write terrain.hdr");
  }
}

struct TShpCloser {
  void operator()(SHPInfo* shp) const { SHPClose(shp); }
  void operator()(DBFInfo* dbf) const { DBFClose(dbf); }
};

// Star-shaped polygons of 1000 vertices, clockwise as shapefiles want their outer rings, spread
// over the raster and overlapping here and there.
void WritePolygons(const fs::path& dir) {
  const std::string base = (dir / "polygons").string();
  const std::unique_ptr<SHPInfo, TShpCloser> shp(SHPCreate(base.c_str(), SHPT_POLYGON));
  const std::unique_ptr<DBFInfo, TShpCloser> dbf(DBFCreate(base.c_str()));
  if (!shp || !dbf || DBFAddField(dbf.get(), "value", FTDouble, 12, 3) != 0) {
    throw std::runtime_error("cannot create " + base + ".shp");
  }
  std::mt19937 random(20261123);
  std::uniform_real_distribution<double> unit(0.0, 1.0);
  constexpr int kVertices = 1000;
  for (int p = 0; p < 500; ++p) {
    const double cx = kMinX + unit(random) * kSide * kCell;
    const double cy = kMaxY - unit(random) * kSide * kCell;
    const double radius = (0.01 + 0.04 * unit(random)) * kSide * kCell;
    const double lobes = 3 + std::floor(unit(random) * 6), phase = unit(random) * 6.28;
    std::vector<double> xs, ys;
    for (int v = 0; v <= kVertices; ++v) {
      const double angle = -2.0 * M_PI * (v % kVertices) / kVertices;
      const double reach =
          radius * (0.75 + 0.2 * std::sin(lobes * angle + phase) + 0.05 * std::sin(37.0 * angle));
      xs.push_back(cx + reach * std::cos(angle));
      ys.push_back(cy + reach * std::sin(angle));
    }
    SHPObject* object = SHPCreateSimpleObject(SHPT_POLYGON, static_cast<int>(xs.size()), xs.data(),
                                              ys.data(), nullptr);
    const int record = SHPWriteObject(shp.get(), -1, object);
    SHPDestroyObject(object);
    if (record < 0 || !DBFWriteDoubleAttribute(dbf.get(), record, 0, 1.0 + p % 97)) {
      throw std::runtime_error("cannot write polygon " + std::to_string(p));
    }
  }
}

// Every page of a new buffer is touched, as a reader that keeps the file in memory touches it.
void ReadFloor(const std::string& file) {
  const size_t size = fs::file_size(file);
  const auto buffer = std::make_unique_for_overwrite<char[]>(size);
  std::ifstream in(file, std::ios::binary);
  if (!in.read(buffer.get(), static_cast<std::streamsize>(size))) {
    throw std::runtime_error("cannot read " + file);
  }
  unsigned sum = 0;
  for (size_t i = 0; i < size; i += 4096) {
    sum += static_cast<unsigned char>(buffer[i]);
  }
  std::printf("%u\n", sum);
}

// The same number of bytes, written from one buffer of a megabyte: the least that writing the
// output costs, without the page faults of a buffer the size of the file.
void WriteFloor(const std::string& file, size_t size) {
  const std::vector<char> bytes(size_t{1} << 20, '7');
  const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  for (size_t left = size; fd >= 0 && left > 0;) {
    const size_t chunk = std::min(left, bytes.size());
    if (::write(fd, bytes.data(), chunk) != static_cast<ssize_t>(chunk)) {
      throw std::runtime_error("cannot write " + file);
    }
    left -= chunk;
  }
  if (fd < 0 || ::close(fd) != 0) {
    throw std::runtime_error("cannot write " + file);
  }
}

void Export(const std::string& format, const std::string& in, const std::string& out) {
  const auto image = zephra::OpenAnyRaster(in);
  if (format == "grid") {
    zephra::TArcInfoGridASCIIExporter().ExportImage(image.get(), out, {});
  } else if (format == "xyz") {
    zephra::TXYZAsciiExporter().ExportImage(image.get(), out, {});
  } else {
    throw std::runtime_error("no exporter " + format);
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "make" && argc == 3) {
      fs::create_directories(argv[2]);
      WriteTerrain(argv[2]);
      WritePolygons(argv[2]);
    } else if (command == "read" && argc == 3) {
      ReadFloor(argv[2]);
    } else if (command == "write" && argc == 4) {
      WriteFloor(argv[2], std::stoull(argv[3]));
    } else if (command == "export" && argc == 5) {
      Export(argv[2], argv[3], argv[4]);
    } else {
      std::fprintf(
          stderr,
          "usage: compare_data make DIR | read FILE | write FILE BYTES | export grid|xyz IN OUT\n");
      return 2;
    }
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "compare_data: %s\n", error.what());
    return 1;
  }
}
