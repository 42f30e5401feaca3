#pragma once
// What several benchmark programs share: a scratch folder and a realistic real raster.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <cstdio>
#include <vector>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

namespace zephra::bench {

// A scratch folder, removed with its files at the end.
class TScratch {
 public:
  TScratch() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zephra-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
      throw std::runtime_error("cannot create a scratch folder");
    }
    FPath = pattern;
  }
  ~TScratch() {
    std::error_code ignored;
    std::filesystem::remove_all(FPath, ignored);
  }
  TScratch(const TScratch&) = delete;
  TScratch& operator=(const TScratch&) = delete;

  std::string File(const char* name) const { return (FPath / name).string(); }

 private:
  std::filesystem::path FPath;
};

// A memory-only side x side raster of cells from 0 to 4000 with one decimal, as a terrain model
// might hold: "1234.5000" and the like.
inline std::unique_ptr<TRealImage> Terrain(int32_t side) {
  TImageHeader header;
  header.Width = side;
  header.Height = side;
  header.Maxx = header.Maxy = static_cast<float>(side);
  header.ResolutionX = header.ResolutionY = 1.0f;
  auto image = TRealImage::Create("", &header);
  image->MemOnly = true;
  for (int32_t r = 0; r < side; ++r) {
    for (int32_t c = 0; c < side; ++c) {
      image->Buffer[static_cast<size_t>(r) * side + c] =
          static_cast<float>((r * 37 + c * 11) % 40000) * 0.1f;
    }
  }
  return image;
}

// Each run writes a new file: replacing the last one would wait for the disk to take it first.
inline void RemoveUntimed(benchmark::State& state, const std::string& fileName) {
  state.PauseTiming();
  std::filesystem::remove(fileName);
  state.ResumeTiming();
}

inline void ReportFileSize(benchmark::State& state, const std::string& fileName) {
  const auto size = static_cast<int64_t>(std::filesystem::file_size(fileName));
  state.SetBytesProcessed(state.iterations() * size);
  state.counters["MB_written"] = static_cast<double>(size) / 1e6;
}

// The reference of the text writers: as many bytes as `written` holds, in one fwrite of a ready
// buffer into a new file.
inline void FwriteSameBytes(benchmark::State& state, const std::string& written,
                            const std::string& file) {
  const std::vector<char> text(std::filesystem::file_size(written), '7');
  for (auto _ : state) {
    RemoveUntimed(state, file);
    std::FILE* out = std::fopen(file.c_str(), "wb");
    if (out == nullptr || std::fwrite(text.data(), 1, text.size(), out) != text.size() ||
        std::fclose(out) != 0) {
      state.SkipWithError("fwrite failed");
      break;
    }
  }
  ReportFileSize(state, file);
}

}  // namespace zephra::bench
