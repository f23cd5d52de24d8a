#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "snapshot/SnapshotRenderer.hpp"
#include "snapshot/SnapshotVerdict.hpp"

namespace quillan::snapshot {

// What a worker process sends back for one case: the case's result, or the
// error that stopped it, for the command to raise at that case's turn as if
// it had drawn the case itself (a UsageError stays one).
std::string answerOf(const std::function<std::string()>& work);
// The result inside an answer; throws the error an answer carries.
std::string resultOf(std::string_view answer);

// A recorded case's view tree and PNG, as a result.
std::string encodePicture(const SnapshotPicture& picture);
SnapshotPicture decodePicture(std::string_view encoded);

// A verified case's verdict, its difference image included, as a result.
std::string encodeVerdict(const SnapshotVerdict& verdict);
SnapshotVerdict decodeVerdict(std::string_view encoded);

}  // namespace quillan::snapshot
