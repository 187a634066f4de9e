# Corpus replay in the test builds: each fuzz target fuzz/fuzz_<name>.cpp is
# also built with replay_main.cpp in place of libFuzzer, as replay_<name>,
# and the test fuzz.replay_<name> feeds it every stored input of
# fuzz/corpus/<name>/ (the TIR reader also every bundled tyre file).
file(GLOB TYRO_FUZZ_TARGETS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/fuzz/fuzz_*.cpp)
foreach(s ${TYRO_FUZZ_TARGETS})
  get_filename_component(n ${s} NAME_WE)
  string(REPLACE "fuzz_" "" short ${n})
  set(inputs)
  if(EXISTS ${CMAKE_SOURCE_DIR}/fuzz/corpus/${short})
    list(APPEND inputs ${CMAKE_SOURCE_DIR}/fuzz/corpus/${short})
  endif()
  if(short STREQUAL "tir")
    file(GLOB tirs ${CMAKE_SOURCE_DIR}/data/tyres/*.tir)
    list(APPEND inputs ${tirs})
  endif()
  if(NOT inputs)
    continue()
  endif()
  add_executable(replay_${short} ${s} ${CMAKE_SOURCE_DIR}/fuzz/replay_main.cpp)
  target_link_libraries(replay_${short} PRIVATE ttyre tbase)
  add_test(NAME fuzz.replay_${short} COMMAND replay_${short} ${inputs})
  set_tests_properties(fuzz.replay_${short} PROPERTIES LABELS fuzz TIMEOUT 120)
endforeach()
