# The program for a page: brevant.mjs and brevant.wasm for its thread, mix.wasm for the audio worklet, the package in one
# file, and the page's modules as they are. All of it lands in build/web/.
file(GLOB web_sources host/backend/web/*.cpp host/backend/web/*.h)
# Of the headless back end what has neither files nor Cairo: a performance is rendered with it in a page, too.
set(headless_sources host/backend/headless/HeadlessLoopDriver.cpp host/backend/headless/HeadlessSpeaker.cpp)
add_library(host_web STATIC ${web_sources} ${headless_sources})
target_link_libraries(host_web PUBLIC host_seam PRIVATE host_mix host_text brevant_strict_warnings)

set(web_folder ${CMAKE_SOURCE_DIR}/build/web)
set(page_folder ${CMAKE_SOURCE_DIR}/host/backend/web/page)
file(MAKE_DIRECTORY ${web_folder})
add_executable(brevant host/launcher/page/PageMain.cpp host/launcher/page/PageOptions.cpp)
target_link_libraries(brevant PRIVATE brevant_app host_runtime host_web brevant_strict_warnings)
target_compile_definitions(brevant PRIVATE BREVANT_VERSION="${BREVANT_VERSION}")
# Debian's emscripten finds the modules of node that it needs by this.
set_target_properties(brevant PROPERTIES RULE_LAUNCH_LINK "${CMAKE_COMMAND} -E env NODE_PATH=/usr/share/nodejs")
set_target_properties(brevant PROPERTIES SUFFIX .mjs RUNTIME_OUTPUT_DIRECTORY ${web_folder}
                      LINK_DEPENDS ${CMAKE_SOURCE_DIR}/host/backend/web/bridge.js)
target_link_options(brevant PRIVATE -Oz -sMODULARIZE -sEXPORT_ES6 -sEXPORT_NAME=createBrevant -sFILESYSTEM=0
                    -sALLOW_MEMORY_GROWTH -sENVIRONMENT=web -sSTRICT -sINCOMING_MODULE_JS_API=[host,instantiateWasm,print,printErr,wasmBinary,locateFile]
                    -sINVOKE_RUN=0
                    -sEXPORTED_RUNTIME_METHODS=[ccall,callMain] -sMALLOC=emmalloc -sEXPORTED_FUNCTIONS=[_main,_malloc]
                    --js-library ${CMAKE_SOURCE_DIR}/host/backend/web/bridge.js)

add_executable(mix host/backend/web/worklet/MixModule.cpp)
target_link_libraries(mix PRIVATE host_mix brevant_strict_warnings)
set_target_properties(mix PROPERTIES SUFFIX .wasm RUNTIME_OUTPUT_DIRECTORY ${web_folder})
target_link_options(mix PRIVATE -O3 -sSTANDALONE_WASM --no-entry -sALLOW_MEMORY_GROWTH -sMALLOC=emmalloc)

file(GLOB_RECURSE package_files ${CMAKE_SOURCE_DIR}/res/*)
add_custom_command(OUTPUT ${web_folder}/package.bin
                   COMMAND node ${CMAKE_SOURCE_DIR}/tools/web/make-archive.mjs ${CMAKE_SOURCE_DIR}/res ${web_folder}/package.bin
                           images/intro01.png=${web_folder}/splash.webp
                   BYPRODUCTS ${web_folder}/splash.webp
                   DEPENDS ${package_files} ${CMAKE_SOURCE_DIR}/tools/web/make-archive.mjs VERBATIM)
file(GLOB page_files CONFIGURE_DEPENDS ${page_folder}/*)
set(page_parts ${page_folder}/index.html ${page_folder}/page.css ${page_folder}/early.js
    ${page_folder}/start.js)
list(REMOVE_ITEM page_files ${page_parts})
add_custom_command(OUTPUT ${web_folder}/index.html
                   COMMAND node ${CMAKE_SOURCE_DIR}/tools/web/put-parts-in.mjs ${web_folder}/index.html ${page_parts}
                   DEPENDS ${page_parts} ${CMAKE_SOURCE_DIR}/tools/web/put-parts-in.mjs VERBATIM)
set(page_copies ${web_folder}/index.html)
foreach(file ${page_files})
  get_filename_component(name ${file} NAME)
  add_custom_command(OUTPUT ${web_folder}/${name} COMMAND ${CMAKE_COMMAND} -E copy ${file} ${web_folder}/${name}
                     DEPENDS ${file} VERBATIM)
  list(APPEND page_copies ${web_folder}/${name})
endforeach()
add_custom_target(web_page ALL DEPENDS brevant mix ${web_folder}/package.bin ${page_copies})
