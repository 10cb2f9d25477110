# Read by ctest: the units that take longest begin first, so that none of them is left alone at the end.
set_tests_properties(
  unit.NumberText.agreesWithTheStreamOnTwentyFiveMillionRandomTexts
  unit.NumberText.agreesWithTheStreamOnTwentyFiveMillionOtherRandomTexts
  PROPERTIES COST 3)
