#include <zephra/Raster/Images/private/zplbGeoTiffCells.h>

#include <algorithm>
#include <type_traits>
#include <vector>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPlatform.h>

namespace zephra {

namespace {

// The cell type each sample type goes into: the smallest that holds every value.
template <typename TSample>
using TCellFor =
    std::conditional_t<std::is_same_v<TSample, int8_t>, int16_t,
                       std::conditional_t<std::is_same_v<TSample, uint16_t>, int32_t, TSample>>;

// The first index i >= 0 with start + i * step >= bound.
int64_t FirstAtOrPast(int64_t bound, int64_t start, int64_t step) {
  return bound <= start ? 0 : (bound - start + step - 1) / step;
}

template <typename TSample, typename TCell>
class TChunkReader {
 public:
  TChunkReader(const TTiffFile& file, const TTiffLayout& layout, const TCellSampling& sampling,
               std::span<TCell> cells)
      : FFile(file), FLayout(layout), FSampling(sampling), FCells(cells) {}

  void Run() {
    if (ReadsWholeStrips()) {
      ReadStripsInPlace();
      return;
    }
    const int64_t chunkHeight = FLayout.ChunkHeight;
    const int64_t chunkWidth = FLayout.ChunkWidth;
    const int64_t lastRow = FSampling.Row0 + (FSampling.Rows - 1) * FSampling.Step;
    const int64_t lastCol = FSampling.Col0 + (FSampling.Cols - 1) * FSampling.Step;
    for (int64_t chunkRow = FSampling.Row0 / chunkHeight; chunkRow <= lastRow / chunkHeight;
         ++chunkRow) {
      const TSpan rows =
          Wanted(chunkRow * chunkHeight, chunkHeight, FSampling.Row0, FSampling.Rows);
      for (int64_t chunkCol = FSampling.Col0 / chunkWidth;
           rows.First < rows.Last && chunkCol <= lastCol / chunkWidth; ++chunkCol) {
        const TSpan cols =
            Wanted(chunkCol * chunkWidth, chunkWidth, FSampling.Col0, FSampling.Cols);
        if (cols.First < cols.Last) {
          Decode(chunkCol * chunkWidth, chunkRow * chunkHeight);
          CopyCells(chunkCol * chunkWidth, chunkRow * chunkHeight, rows, cols);
        }
      }
    }
  }

 private:
  // Sampled indices First .. Last - 1 that fall into one chunk.
  struct TSpan {
    int64_t First;
    int64_t Last;
  };

  TSpan Wanted(int64_t chunkStart, int64_t chunkSize, int64_t start, int64_t count) const {
    return {std::min(count, FirstAtOrPast(chunkStart, start, FSampling.Step)),
            std::min(count, FirstAtOrPast(chunkStart + chunkSize, start, FSampling.Step))};
  }

  // A whole read of a stripped band that is alone in its strips and stored as its cells are:
  // every strip decodes straight into its rows of the buffer.
  bool ReadsWholeStrips() const {
    return std::is_same_v<TSample, TCell> && !FLayout.Tiled && FLayout.PixelSamples == 1 &&
           FSampling.Step == 1 && FSampling.Col0 == 0 && FSampling.Row0 == 0 &&
           FSampling.Cols == FLayout.Width && FSampling.Rows == FLayout.Height;
  }

  void ReadStripsInPlace() {
    const int64_t width = FLayout.Width;
    for (int64_t row = 0; row < FSampling.Rows; row += FLayout.ChunkHeight) {
      const int64_t rows = std::min<int64_t>(FLayout.ChunkHeight, FSampling.Rows - row);
      ReadChunk(static_cast<uint32_t>(0), static_cast<uint32_t>(row), FCells.data() + row * width,
                rows * width * static_cast<int64_t>(sizeof(TSample)));
    }
  }

  void Decode(int64_t x, int64_t y) {
    if (FScratch.empty()) {
      CheckOpenAllocation(FFile.FileName(), static_cast<int64_t>(FLayout.ChunkBytes()));
      FScratch.resize(FLayout.ChunkBytes() / sizeof(TSample));
    }
    const int64_t rows = FLayout.Tiled
                             ? FLayout.ChunkHeight
                             : std::min<int64_t>(FLayout.ChunkHeight, int64_t{FLayout.Height} - y);
    const int64_t bytes =
        rows * FLayout.ChunkWidth * FLayout.PixelSamples * static_cast<int64_t>(sizeof(TSample));
    ReadChunk(static_cast<uint32_t>(x), static_cast<uint32_t>(y), FScratch.data(), bytes);
  }

  void ReadChunk(uint32_t x, uint32_t y, void* target, int64_t bytes) const {
    TIFF* tif = FFile.Handle();
    const bool tiled = FLayout.Tiled;
    const uint32_t chunk = tiled ? TIFFComputeTile(tif, x, y, 0, FLayout.Plane)
                                 : TIFFComputeStrip(tif, y, FLayout.Plane);
    const uint32_t chunks = tiled ? TIFFNumberOfTiles(tif) : TIFFNumberOfStrips(tif);
    const std::string what = (tiled ? "Decoding tile " : "Decoding strip ") + std::to_string(chunk);
    if (chunk >= chunks) {
      FFile.Raise(what + " (the file has " + std::to_string(chunks) + ")");
    }
    const tmsize_t read = tiled ? TIFFReadEncodedTile(tif, chunk, target, bytes)
                                : TIFFReadEncodedStrip(tif, chunk, target, bytes);
    if (read != bytes) {
      FFile.Raise(what);
    }
  }

  void CopyCells(int64_t x0, int64_t y0, TSpan rows, TSpan cols) {
    const int64_t pixel = FLayout.PixelSamples;
    const int64_t stride = FSampling.Step * pixel;
    const int64_t count = cols.Last - cols.First;
    const int64_t firstCol = FSampling.Col0 + cols.First * FSampling.Step - x0;
    for (int64_t i = rows.First; i < rows.Last; ++i) {
      const int64_t y = FSampling.Row0 + i * FSampling.Step - y0;
      const TSample* source =
          FScratch.data() + (y * FLayout.ChunkWidth + firstCol) * pixel + FLayout.SampleInPixel;
      TCell* target = FCells.data() + i * FSampling.Cols + cols.First;
      if (stride == 1) {
        std::copy(source, source + count, target);
      } else {
        for (int64_t k = 0; k < count; ++k) {
          target[k] = static_cast<TCell>(source[k * stride]);
        }
      }
    }
  }

  const TTiffFile& FFile;
  const TTiffLayout& FLayout;
  const TCellSampling& FSampling;
  std::span<TCell> FCells;
  std::vector<TSample> FScratch;
};

void CheckSampling(const TTiffLayout& layout, const TCellSampling& sampling, size_t cells) {
  if (sampling.Rows <= 0 || sampling.Cols <= 0) {
    if (cells != 0) {
      throw EInvalidOpException("An empty read cannot fill " + std::to_string(cells) + " cells");
    }
    return;
  }
  if (sampling.Step < 1 || sampling.Row0 < 0 ||
      sampling.Row0 + (sampling.Rows - 1) * sampling.Step >= layout.Height) {
    throw Exception("Attempted to read past the end of the file");
  }
  if (sampling.Col0 < 0 || sampling.Col0 + (sampling.Cols - 1) * sampling.Step >= layout.Width ||
      static_cast<uint64_t>(sampling.Rows * sampling.Cols) != cells) {
    throw EInvalidOpException(
        "A read of " + std::to_string(sampling.Rows) + " rows of " + std::to_string(sampling.Cols) +
        " cells from column " + std::to_string(sampling.Col0) +
        " does not fit the file or the buffer of " + std::to_string(cells) + " cells");
  }
}

template <typename TSample, typename TCell>
void ReadAs(const TTiffFile& file, const TTiffLayout& layout, const TCellSampling& sampling,
            std::span<TCell> cells) {
  if constexpr (std::is_same_v<TCellFor<TSample>, TCell>) {
    TChunkReader<TSample, TCell>(file, layout, sampling, cells).Run();
  } else {
    throw EInvalidOpException("The samples of " + file.FileName() +
                              " do not go into cells of this type");
  }
}

}  // namespace

template <typename TCell>
void ReadGeoTiffCells(const TTiffFile& file, const TTiffLayout& layout,
                      const TCellSampling& sampling, std::span<TCell> cells) {
  CheckSampling(layout, sampling, cells.size());
  if (cells.empty()) {
    return;
  }
  switch (layout.Sample) {
    case TSampleType::UInt8:
      return ReadAs<uint8_t>(file, layout, sampling, cells);
    case TSampleType::Int8:
      return ReadAs<int8_t>(file, layout, sampling, cells);
    case TSampleType::Int16:
      return ReadAs<int16_t>(file, layout, sampling, cells);
    case TSampleType::UInt16:
      return ReadAs<uint16_t>(file, layout, sampling, cells);
    case TSampleType::Int32:
      return ReadAs<int32_t>(file, layout, sampling, cells);
    case TSampleType::Float32:
      return ReadAs<float>(file, layout, sampling, cells);
  }
}

template void ReadGeoTiffCells(const TTiffFile&, const TTiffLayout&, const TCellSampling&,
                               std::span<float>);
template void ReadGeoTiffCells(const TTiffFile&, const TTiffLayout&, const TCellSampling&,
                               std::span<uint8_t>);
template void ReadGeoTiffCells(const TTiffFile&, const TTiffLayout&, const TCellSampling&,
                               std::span<int16_t>);
template void ReadGeoTiffCells(const TTiffFile&, const TTiffLayout&, const TCellSampling&,
                               std::span<int32_t>);

}  // namespace zephra
