# Installs the documents. They are laid out as in the source tree, so that the links between them work.

install(FILES README.md CHANGELOG.md CONTRIBUTING.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" PATTERN "*.dot" EXCLUDE)
install(DIRECTORY boardsim/examples DESTINATION "${CMAKE_INSTALL_DOCDIR}/boardsim")
install(DIRECTORY fleet/examples DESTINATION "${CMAKE_INSTALL_DOCDIR}/fleet")
install(FILES debian/README.source DESTINATION "${CMAKE_INSTALL_DOCDIR}/debian")
