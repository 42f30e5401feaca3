// Every writer that replaces files, under real faults: a file size limit, a read-only folder, a
// read-only .doc beside a writable .img, a full file system and a process killed mid-write. After
// each, the old files must be byte-identical (or the new ones complete), no temporary may be
// left, and the caller must have the library's error.

#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <thread>

#include <zephra/Common/private/zpOutputFile.h>
#include <zephra/Export/zplZephraImageSaveCopyExporter.h>
#include <zephra/Palette/zplbZephraPalFile.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "support/TestSupport.h"

namespace zephra {
namespace {

namespace fs = std::filesystem;
using Snapshot = std::map<std::string, std::string>;

Snapshot Take(const fs::path& folder) {
  Snapshot files;
  for (const auto& entry : fs::directory_iterator(folder)) {
    files[entry.path().filename().string()] = test::ReadFileBytes(entry.path().string());
  }
  return files;
}

TImageHeader Header(int32_t side, TFileType fileType, int32_t legend) {
  TImageHeader header;
  header.Width = header.Height = side;
  header.Maxx = header.Maxy = static_cast<float>(side);
  header.FileType = fileType;
  header.Categories.assign(static_cast<size_t>(legend), "a category with a long name");
  return header;
}

template <typename TImage>
void WriteImage(const fs::path& folder, TFileType fileType, int generation) {
  const TImageHeader header = Header(generation == 0 ? 8 : 200, fileType, generation * 2000);
  auto image = TImage::Create((folder / "r.img").string(), &header);
  for (int32_t i = 0; i < image->NumRecs; ++i) {
    image->WriteCR(i % header.Width + 1, i / header.Width + 1, static_cast<float>(i + generation));
  }
  image->Close();
}

// Each writer writes a small version first (generation 0), then one several times larger.
struct TWriter {
  const char* Name;
  std::function<void(const fs::path& folder, int generation)> Write;
};

const TWriter kWriters[] = {
    {"raster write-back", [](const fs::path& f, int g) { WriteImage<TRealImage>(f, ftBinary, g); }},
    {"text raster write-back",
     [](const fs::path& f, int g) { WriteImage<TAsciiImage>(f, ftAscii, g); }},
    {"header save",
     [](const fs::path& f, int g) {
       Header(4, ftBinary, 20 + g * 5000).SaveToFile((f / "h.doc").string());
     }},
    {"palette save",
     [](const fs::path& f, int g) {
       TZephraPalFile palette;
       palette.SetCount(g == 0 ? 16 : 20000);
       palette.SaveToFile((f / "p.pal").string());
     }},
    {"save-copy export",
     [](const fs::path& f, int g) {
       const TImageHeader header = Header(g == 0 ? 8 : 200, ftBinary, 0);
       auto source = TRealImage::Create((f / "source-in-memory.img").string(), &header);
       source->MemOnly = true;
       TZephraImageSaveCopyExporter().ExportImage(source.get(), (f / "c.img").string(), {});
     }},
};

// Applies a fault to the folder in which generation 0 stands, or tells that it can't be made.
struct TFault {
  const char* Name;
  std::function<bool(const fs::path& folder)> Before;  // runs before generation 0
  std::function<bool(const fs::path& folder)> Apply;   // runs between the generations
};

// A small file system of its own, in a mount namespace that lives as long as the child.
bool MountSmallFileSystem(const fs::path& folder) {
  const int flags = geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS;
  return unshare(flags) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("tmpfs", folder.c_str(), "tmpfs", 0, "size=128k") == 0;
}

bool LimitFileSize(const fs::path& folder) {
  uintmax_t largest = 0;
  for (const auto& entry : fs::directory_iterator(folder)) {
    largest = std::max(largest, entry.file_size());
  }
  signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{largest + 64, RLIM_INFINITY};
  return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

// A folder nobody may write to; root, whom the system lets write anyway, becomes nobody.
bool ReadOnlyFolder(const fs::path& folder) {
  fs::permissions(folder.parent_path(), fs::perms(0755));
  fs::permissions(folder, fs::perms(0555));
  return geteuid() != 0 || setuid(65534) == 0;
}

// The second file of each pair (and any single file) read-only; data files stay writable.
bool ReadOnlyTargets(const fs::path& folder) {
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() != ".img") {
      fs::permissions(entry.path(), fs::perms(0444));
    }
  }
  return true;
}

bool NoFault(const fs::path&) {
  return true;
}

const TFault kFaults[] = {
    {"file size limit", NoFault, LimitFileSize},
    {"read-only folder", NoFault, ReadOnlyFolder},
    {"read-only .doc beside a writable .img", NoFault, ReadOnlyTargets},
    {"full file system", MountSmallFileSystem, NoFault},
};

// What a child reports by its exit code; anything else means it crashed.
enum TOutcome { okKept, okNoError, okOtherError, okChanged, okSetupFailed, okCannotFault };
const char* const kOutcomeText[] = {"kept",
                                    "no error was raised",
                                    "a non-library error",
                                    "the old files changed or a temporary was left",
                                    "generation 0 could not be written",
                                    "fault not possible"};

// Runs in a child, so that limits, namespaces and a changed user end with it.
int RunInChild(const std::function<int()>& body) {
  const pid_t child = fork();
  if (child == 0) {
    int outcome = okOtherError;
    try {
      outcome = body();
    } catch (...) {
    }
    _exit(outcome);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int TryFault(const TWriter& writer, const TFault& fault, const fs::path& folder) {
  if (!fault.Before(folder)) {
    return okCannotFault;
  }
  try {
    writer.Write(folder, 0);
  } catch (...) {
    return okSetupFailed;
  }
  const Snapshot before = Take(folder);
  if (!fault.Apply(folder)) {
    return okCannotFault;
  }
  try {
    writer.Write(folder, 1);
    return okNoError;
  } catch (const Exception&) {
    return Take(folder) == before ? okKept : okChanged;
  } catch (...) {
    return okOtherError;
  }
}

TEST(SafeWrite, EveryReplacingWriterKeepsTheOldFilesUnderEveryFault) {
  const test::TTempDir dir;
  for (const TFault& fault : kFaults) {
    for (const TWriter& writer : kWriters) {
      const fs::path folder = dir.Path() / (std::string(fault.Name) + " - " + writer.Name);
      fs::create_directory(folder);
      const int outcome = RunInChild([&] { return TryFault(writer, fault, folder); });
      if (outcome == okCannotFault) {
        std::cout << "[ SKIPPED  ] " << fault.Name << ": this machine cannot make it\n";
        continue;
      }
      EXPECT_EQ(outcome, okKept) << writer.Name << " under " << fault.Name << ": "
                                 << (outcome < 0 ? "the child crashed" : kOutcomeText[outcome]);
    }
  }
}

TEST(SafeWrite, AKilledWriteBackLeavesTheOldPairAndTheNextWriteCleansUp) {
  const test::TTempDir dir;
  const fs::path folder = dir.Path();
  WriteImage<TRealImage>(folder, ftBinary, 0);
  const Snapshot old = Take(folder);

  const pid_t child = fork();
  if (child == 0) {
    const TImageHeader header = Header(4096, ftBinary, 0);
    auto image = TRealImage::Create((folder / "r.img").string(), &header);
    image->WriteCR(1, 1, 1.0f);
    image->Close();
    _exit(0);
  }
  // Kill it as soon as its temporary has data in it.
  bool caught = false;
  for (int i = 0; i < 200000 && !caught; ++i) {
    for (const auto& entry : fs::directory_iterator(folder)) {
      std::error_code ignored;
      caught = caught || (entry.path().extension() == ".zptmp" && entry.file_size(ignored) > 0);
    }
  }
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  ASSERT_TRUE(caught) << "the write-back finished before it could be killed";

  Snapshot after = Take(folder);
  std::erase_if(after, [](const auto& file) { return file.first.ends_with(".zptmp"); });
  EXPECT_EQ(after, old);
  EXPECT_GT(Take(folder).size(), old.size()) << "the killed process left no temporary";

  WriteImage<TRealImage>(folder, ftBinary, 1);
  EXPECT_EQ(Take(folder).size(), old.size()) << "a stale temporary is still there";
  EXPECT_EQ(TRealImage::Open((folder / "r.img").string(), false)->ReadCR0(5, 0), 6.0f);
}

TEST(SafeWrite, ReplacementKeepsLinksAndModesAndSparesLiveTemporaries) {
  const test::TTempDir dir;
  const std::string target = dir.File("real.doc");
  test::WriteFileBytes(target, "old");
  fs::permissions(target, fs::perms(0640));
  fs::create_symlink(target, dir.File("link.doc"));
  // A temporary of this very process may belong to another thread's write in progress.
  const std::string live = target + "." + std::to_string(getpid()) + "-7.zptmp";
  test::WriteFileBytes(live, "");

  TOutputFile file(dir.File("link.doc"));
  file.Write("new");
  EXPECT_EQ(test::ReadFileBytes(target), "old") << "the target changed before the commit";
  file.Commit();
  EXPECT_EQ(test::ReadFileBytes(target), "new");
  EXPECT_TRUE(fs::is_symlink(dir.File("link.doc")));
  EXPECT_EQ(fs::status(target).permissions(), fs::perms(0640));
  EXPECT_TRUE(fs::exists(live));

  // Dropped without a commit: the target stays, the temporary goes.
  {
    TOutputFile dropped(target);
    dropped.Write("never");
  }
  EXPECT_EQ(test::ReadFileBytes(target), "new");
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.Path()), fs::directory_iterator()), 3);
}

}  // namespace
}  // namespace zephra
