# Everything that the two programs are made with, found once.
find_package(Threads REQUIRED)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Network Gui Widgets)
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  find_package(Qt6 6.4 REQUIRED COMPONENTS DBus)
endif()
find_package(Boost 1.81 REQUIRED COMPONENTS json)
find_package(CLI11 REQUIRED)
set(CMAKE_AUTOMOC ON)
