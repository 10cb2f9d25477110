# Read by ctest: the longest unit tests start first, so that none of them runs alone at the end.
set_tests_properties(
  unit.NumberText.agreesOnRandomTexts
  unit.NumberText.agreesOnOtherRandomTexts
  PROPERTIES LABELS slow COST 3)
