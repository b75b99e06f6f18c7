#pragma once

#include "KorvaneCore/scanners/CatalogueRowScanner.h"

namespace korvane {

/// What mail and messages downloaded, one item an attachment or its folder.
class AttachmentsScanner final : public CatalogueRowScanner {
  public:
    explicit AttachmentsScanner(FileURL home)
        : CatalogueRowScanner(std::move(home), "attachments", "Attachments", Proposal::eachChild) {}
};

} // namespace korvane
