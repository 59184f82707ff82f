# How the Windows half is compiled: self-contained (nothing but the system's own DLLs is loaded), small and
# hardened.
add_compile_definitions(UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX STRICT
                        # The oldest Windows that the module loads on is 7: newer functions are looked up.
                        WINVER=0x0601 _WIN32_WINNT=0x0601 _WIN32_IE=0x0900)

# _FORTIFY_SOURCE only means something in optimised code, and warns in other.
add_compile_options(-fstack-protector-strong "$<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>"
                    -ffunction-sections -fdata-sections
                    -Wno-non-virtual-dtor)  # COM interfaces have no virtual destructor, by design
add_link_options(-static -fstack-protector-strong LINKER:--gc-sections,--dynamicbase,--nxcompat
                 LINKER:--no-insert-timestamp)  # the same sources make the same file
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  add_compile_options(-fcf-protection=full)
  add_link_options(LINKER:--high-entropy-va)
else()
  # A .def file names the exports without the decoration of stdcall.
  add_link_options(LINKER:--enable-stdcall-fixup)
endif()

# Programs find the module beside them, as they do where it is installed.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

# The one library that comes from the building machine is made of headers only. Its folder alone is shown to
# the cross compiler, since everything else beside it belongs to another system.
find_path(VEXA_JSON_HEADERS nlohmann/json.hpp NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/headers")
file(CREATE_LINK "${VEXA_JSON_HEADERS}/nlohmann" "${CMAKE_BINARY_DIR}/headers/nlohmann" SYMBOLIC)
add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED GLOBAL)
target_include_directories(nlohmann_json::nlohmann_json SYSTEM INTERFACE "${CMAKE_BINARY_DIR}/headers")
