#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <string>

namespace korvane {

/// Finds pictures that look alike below a folder (re-saved, resized, lightly edited, of one burst)
/// by their difference hashes. Of each group all but the largest file are items; the category is
/// the kept one's path. Packages are not entered: their pictures belong to what is in them. Finds
/// nothing where the system cannot decode pictures (`ImageDecoder::isAvailable`).
class SimilarImagesScanner final : public NamedScanner {
  public:
    /// `hammingThreshold`: how many of the 64 bits of two hashes may differ, 8 in the tool.
    SimilarImagesScanner(FileURL rootURL, int hammingThreshold);

    using ModuleScanner::scan;
    [[nodiscard]] const FileURL& rootURL() const noexcept { return rootURL_; }
    [[nodiscard]] int hammingThreshold() const noexcept { return hammingThreshold_; }
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    FileURL rootURL_;
    int hammingThreshold_;
};

} // namespace korvane
