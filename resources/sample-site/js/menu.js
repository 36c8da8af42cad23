// On a narrow screen the navigation folds away behind a button.
const menuButton = document.querySelector('.menu');
const navigation = document.getElementById('nav');

menuButton.addEventListener('click', () => {
  const open = navigation.classList.toggle('open');
  menuButton.setAttribute('aria-expanded', String(open));
});
