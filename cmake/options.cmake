# orv_options: what every target of ours is compiled with. Link it PRIVATE.
add_library(orv_options INTERFACE)
target_compile_features(orv_options INTERFACE cxx_std_20)
target_compile_options(orv_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wdouble-promotion -Wshadow
    -Wold-style-cast -Wcast-qual -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wundef -Werror
    # A frame and a motion-blur sample must compute the same floats on every compiler.
    -ffp-contract=off
    -fvisibility=hidden -fvisibility-inlines-hidden)

option(ORV_SANITIZE "AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
if(ORV_SANITIZE)
    target_compile_options(orv_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(orv_options INTERFACE -fsanitize=address,undefined)
endif()

if(ORV_FUZZ)
    # Counts which branches an input takes; the targets alone are linked with libFuzzer's main.
    target_compile_options(orv_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
