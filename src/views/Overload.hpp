#pragma once

namespace quillan::views {

// Lambda visitor for the node and modifier variants, for passes small enough
// not to deserve a named visitor struct.
template <typename... Fs>
struct Overload : Fs... {
  using Fs::operator()...;
};
template <typename... Fs>
Overload(Fs...) -> Overload<Fs...>;

}  // namespace quillan::views
