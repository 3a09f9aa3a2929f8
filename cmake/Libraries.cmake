# Everything that the two programs are made with, found once.
find_package(Threads REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Network Gui Widgets Qml Quick)
set(QT_QML_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/qml) # one import root
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  find_package(Qt6 6.4 REQUIRED COMPONENTS DBus)
endif()
find_package(Boost 1.81 REQUIRED COMPONENTS json url)
find_package(OpenSSL 3 REQUIRED)
find_package(simdjson REQUIRED)
find_package(CLI11 REQUIRED)
find_package(ICU 72 REQUIRED COMPONENTS uc)
if(VERANOX_TESTS)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Test QuickTest)
  find_library(UNISTRING_LIBRARY unistring REQUIRED) # a second opinion on Unicode
endif()
set(CMAKE_AUTOMOC ON)
