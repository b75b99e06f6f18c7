#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/InventoryFiles.h"

namespace korvane {

/// Adds the applications that lie in a folder, or a few folders deeper, as things of their own:
/// bundles ("Name.app") and AppImages. A bundle without a readable description goes by the name of
/// its folder. Any thread.
void addApplicationsIn(const FileURL& folder, FoldersRead& foldersRead, SoftwareListing& listing);

} // namespace korvane
