# SPDX-License-Identifier: Apache-2.0
# Two precompiled headers serve all targets: making one for each took more than a quarter of the
# build.
set(empty "${PROJECT_BINARY_DIR}/empty.cpp")
file(CONFIGURE OUTPUT "${empty}" CONTENT "")

add_library(vandrel_headers OBJECT "${empty}")
set_target_properties(vandrel_headers PROPERTIES AUTOMOC OFF)
target_link_libraries(vandrel_headers PRIVATE vandrel_options Qt6::Core)
target_precompile_headers(vandrel_headers PRIVATE
    <algorithm> <functional> <memory> <optional> <vector>
    <QByteArray> <QDateTime> <QHash> <QSet> <QString> <QStringList>)

if(VANDREL_TESTS)
    add_library(vandrel_test_headers OBJECT "${empty}")
    set_target_properties(vandrel_test_headers PROPERTIES AUTOMOC OFF)
    target_link_libraries(vandrel_test_headers PRIVATE
        vandrel_options Qt6::Core GTest::gtest GTest::gmock)
    target_precompile_headers(vandrel_test_headers PRIVATE
        <gtest/gtest.h> <algorithm> <functional> <memory> <optional> <vector>
        <QByteArray> <QDateTime> <QHash> <QSet> <QString> <QStringList>)
endif()
