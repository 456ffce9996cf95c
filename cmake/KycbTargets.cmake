# What every target of ours has in common: language level, visibility, warnings, floating point.

add_library(kycb_options INTERFACE)
target_compile_features(kycb_options INTERFACE cxx_std_20)

# Contraction of a*b+c into a fused operation changes the rounding of single results and differs
# between compilers, optimisation levels and instruction sets. The clash list must not, and the
# exact predicates rely on every operation being rounded on its own.
target_compile_options(kycb_options INTERFACE -ffp-contract=off)

target_compile_options(kycb_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
# g++ 12 warns of overlapping copies inside std::string's operator+ where there are none
# (GCC bug 105651); g++ 13 is cured.
target_compile_options(kycb_options INTERFACE
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)
if(KYCB_WARNINGS_AS_ERRORS)
    target_compile_options(kycb_options INTERFACE -Werror)
endif()
if(KYCB_SANITIZE)
    target_compile_options(kycb_options INTERFACE -fsanitize=${KYCB_SANITIZE}
                                                  -fno-omit-frame-pointer
                                                  -fno-sanitize-recover=all)
    target_link_options(kycb_options INTERFACE -fsanitize=${KYCB_SANITIZE})
endif()
if(KYCB_COVERAGE)
    target_compile_options(kycb_options INTERFACE --coverage)
    target_link_options(kycb_options INTERFACE --coverage)
endif()

# Applies the common settings to TARGET without handing them to those who link it.
function(kycb_configure target)
    target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:kycb_options>)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
endfunction()
