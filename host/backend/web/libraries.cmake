# The libraries of a browser's build: compiled from Debian's sources, which tools/web/fetch-sources.sh has brought to
# build/sources, and the headers of libstb-dev. The targets have the names that the machine's own libraries have.
enable_language(C)
set(sources ${CMAKE_SOURCE_DIR}/build/sources)
foreach(library pugixml libogg libvorbis libsamplerate)
  if(NOT EXISTS ${sources}/${library})
    message(FATAL_ERROR "${sources}/${library} is missing: ./dev web fetches it")
  endif()
endforeach()

add_library(web_pugixml STATIC ${sources}/pugixml/src/pugixml.cpp)
target_include_directories(web_pugixml SYSTEM PUBLIC ${sources}/pugixml/src)
target_compile_definitions(web_pugixml PUBLIC PUGIXML_NO_EXCEPTIONS PUGIXML_NO_XPATH PUGIXML_NO_STL)
add_library(pugixml::pugixml ALIAS web_pugixml)

# libogg's configure script would find these types.
set(INCLUDE_INTTYPES_H 1)
set(INCLUDE_STDINT_H 1)
set(INCLUDE_SYS_TYPES_H 1)
foreach(bits 16 32 64)
  set(SIZE${bits} int${bits}_t)
  set(USIZE${bits} uint${bits}_t)
endforeach()
configure_file(${sources}/libogg/include/ogg/config_types.h.in ${CMAKE_BINARY_DIR}/ogg/ogg/config_types.h @ONLY)
add_library(web_vorbis STATIC ${sources}/libogg/src/bitwise.c ${sources}/libogg/src/framing.c)
foreach(file analysis bitrate block codebook envelope floor0 floor1 info lpc lsp mapping0 mdct psy registry res0
             sharedbook smallft synthesis vorbisfile)
  target_sources(web_vorbis PRIVATE ${sources}/libvorbis/lib/${file}.c)
endforeach()
# In place of the library's tables of windows, which would be a tenth of all that the page's program takes.
target_sources(web_vorbis PRIVATE ${CMAKE_CURRENT_LIST_DIR}/vorbis/Window.cpp)
target_include_directories(web_vorbis SYSTEM PUBLIC ${sources}/libogg/include ${CMAKE_BINARY_DIR}/ogg
                           ${sources}/libvorbis/include PRIVATE ${sources}/libvorbis/lib)

add_library(web_samplerate STATIC)
foreach(file samplerate src_linear src_sinc src_zoh)
  target_sources(web_samplerate PRIVATE ${sources}/libsamplerate/src/${file}.c)
endforeach()
target_include_directories(web_samplerate SYSTEM PUBLIC ${sources}/libsamplerate/include)
# The microphone goes through it for as long as the ocarina is open.
target_compile_options(web_samplerate PRIVATE -O3)
target_compile_definitions(web_samplerate PRIVATE ENABLE_SINC_FAST_CONVERTER HAVE_STDBOOL_H PACKAGE="libsamplerate"
                           VERSION="0.2.2")

add_library(web_stb INTERFACE)
find_path(STB_INCLUDE stb_image.h PATHS /usr/include/stb NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
target_include_directories(web_stb SYSTEM INTERFACE ${STB_INCLUDE})

foreach(target web_pugixml web_vorbis web_samplerate)
  target_compile_options(${target} PRIVATE -w)
endforeach()
add_library(PkgConfig::PNG ALIAS web_stb)
add_library(PkgConfig::VORBIS ALIAS web_vorbis)
add_library(PkgConfig::SNDFILE ALIAS web_samplerate)
