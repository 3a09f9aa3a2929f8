# What Qt makes out of QML files is not ours to keep free of warnings. Call it after qt_add_qml_module, from its folder.
function(accept_generated_qml target)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "qmlcache|qmltyperegistrations")
  set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS -w)
endfunction()
