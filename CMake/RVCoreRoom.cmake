# One static library per room. DEPENDS names the rooms it links; Scripts/check-includes proves what it may include.
include(GNUInstallDirs)

# What every target of ours is built with; nothing of it reaches a consumer but the language level.
function(rvcore_compile_settings target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
    if(PROJECT_IS_TOP_LEVEL)
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
        # GCC 12 sees overlapping, endless and overflowing copies in "text" + std::string(…), depending on what it
        # inlines; later ones do not.
        if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
            target_compile_options(${target} PRIVATE
                -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow -Wno-stringop-overread)
        endif()
        # What a sanitizer puts between the lines makes the compiler doubt that variants are initialised; and a fence
        # that the thread sanitizer does not follow is the standard library's own.
        if(CMAKE_CXX_FLAGS MATCHES "-fsanitize=" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
            target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized -Wno-tsan)
        endif()
    endif()
endfunction()

# rvcore_room(<name> SOURCES <files…> [DEPENDS <rooms…>] [LINKS <other targets…>] [HEADERS <files…>])
#
# Everybody links a room as RVCore::<name>, in this build as well as against an installed tree. HEADERS are the
# headers that are installed and compiled alone; by default all in the folder.
function(rvcore_room name)
    cmake_parse_arguments(ROOM "" "" "SOURCES;DEPENDS;LINKS;HEADERS" ${ARGN})
    set(target ${RVCORE_TARGET_PREFIX}${name})
    add_library(${target} STATIC ${ROOM_SOURCES})
    add_library(RVCore::${name} ALIAS ${target})
    rvcore_compile_settings(${target})

    # <Room/Header.h> names a platform header, <Folder/Header.h> one of the framework.
    set(half ${PROJECT_SOURCE_DIR}/Platform)
    if(name STREQUAL "RVCore")
        set(half ${PROJECT_SOURCE_DIR}/Sources)
    endif()
    if(NOT ROOM_HEADERS)
        file(GLOB_RECURSE ROOM_HEADERS CONFIGURE_DEPENDS *.h)
    endif()
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${half} FILES ${ROOM_HEADERS})
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${half}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/RVCore>)

    list(TRANSFORM ROOM_DEPENDS PREPEND RVCore::)
    target_link_libraries(${target} PUBLIC ${ROOM_DEPENDS} ${ROOM_LINKS})

    # A desktop registers itself before main() from an object file that nothing refers to, so a linker would leave
    # it in the archive. Naming the C symbol that stands in the same file as undefined pulls it in.
    if(name MATCHES "^.+Backend$")
        target_link_options(${target} INTERFACE LINKER:--undefined=rvcoreRegister${name})
    endif()

    # libRVCoreFoundation.a and so on; the framework itself is libRVCore.a.
    string(REGEX REPLACE "^RVCore" "" suffix ${name})
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${name}
        OUTPUT_NAME RVCore${suffix}
        VERIFY_INTERFACE_HEADER_SETS ${PROJECT_IS_TOP_LEVEL})
    set_property(GLOBAL APPEND PROPERTY RVCORE_ROOMS ${name})
endfunction()

# A test runs once per build, so optimising it costs more than it gains: without, it compiles in half the time. What
# it tests keeps its optimisation. Precompiled headers are shared by what is compiled alike: as Qt asks for it.
function(rvcore_test_compile_settings target)
    rvcore_compile_settings(${target})
    target_compile_options(${target} PRIVATE -fPIC $<$<NOT:$<CONFIG:Debug>>:-O0>)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(${target} PRIVATE -fpch-preprocess) # ccache asks for this
    endif()
endfunction()

# rvcore_test(<name> SOURCES <files…> DEPENDS <rooms…> [LINKS <other targets…>] [LABELS <label>])
#
# A test program; CTest knows its cases one by one.
function(rvcore_test name)
    cmake_parse_arguments(TEST "" "LABELS" "SOURCES;DEPENDS;LINKS" ${ARGN})
    add_executable(${name} ${TEST_SOURCES})
    rvcore_test_compile_settings(${name})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/Tests)
    list(TRANSFORM TEST_DEPENDS PREPEND RVCore::)
    target_link_libraries(${name} PRIVATE ${TEST_DEPENDS} ${TEST_LINKS} GTest::gmock GTest::gtest_main)
    target_precompile_headers(${name} REUSE_FROM RVCoreTestHeaders)
    # Six files at a time: they instantiate the same templates, and together that takes half as long. So that their
    # names do not meet, each has a namespace of its own, called after the file.
    set_target_properties(${name} PROPERTIES UNITY_BUILD ${RVCORE_JOINED_TESTS} UNITY_BUILD_BATCH_SIZE 6)
    set(properties TIMEOUT 300)
    if(TEST_LABELS)
        list(APPEND properties LABELS ${TEST_LABELS})
    endif()
    # A window manager that gets too little of the processor leaves out what a pointer does.
    if("display" IN_LIST TEST_LABELS)
        list(APPEND properties RUN_SERIAL ON)
    endif()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES ${properties})
endfunction()
