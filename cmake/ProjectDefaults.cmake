# Flags shared by every target of ours. Third-party headers come in as SYSTEM
# includes through their imported targets, so -Werror applies to our code only.
if(QUILLAN_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()

if(QUILLAN_FUZZ)
  # Coverage instrumentation for libFuzzer in every library the targets link;
  # the targets themselves add the fuzzer's main (-fsanitize=fuzzer).
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer
                      -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()

function(quillan_target_defaults target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror
    # GCC 12 at -O3 reports overlapping copies inside std::string's operator+
    # ("." + name) that cannot happen (a known false positive of -Wrestrict).
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
  target_compile_features(${target} PUBLIC cxx_std_20)
endfunction()
