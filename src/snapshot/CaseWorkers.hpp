#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "snapshot/SnapshotCase.hpp"

namespace quillan::snapshot {

// Draws cases in worker processes forked from this one and hands their
// results back in case order, so that what the command prints and writes is
// what drawing them one after the other in this process gave.
//
// The workers start with what this process has loaded (the drawing module,
// the config's defaults) but must not inherit loaded fonts: Pango sorts fonts
// on threads of its own, and a fork while one of them holds fontconfig's lock
// leaves the worker waiting for good. Each worker loads its own, and takes
// the cases of a run of the matrix's locales first, so that the fonts of a
// script are loaded by one worker rather than by all.
//
// A case that throws is rethrown at its turn. A worker that dies (a widget's
// fatal error aborts it, having said why on standard error) ends this process
// the same way once the cases before it are delivered, as the case would have
// ended a command drawing it in process.
struct CaseWorkers {
  using Work = std::function<std::string(const SnapshotCase&)>;
  using Deliver = std::function<void(const SnapshotCase&, const std::string& result)>;

  static void run(std::size_t jobs, const std::vector<SnapshotCase>& cases, const Work& work, const Deliver& deliver);
};

}  // namespace quillan::snapshot
